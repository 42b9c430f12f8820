// A window that stores a new list again and again, and a line on its output for each. Its end is to
// be killed.
#include "mainwindow.h"
#include "stringcolumns.h"

#include <QAction>
#include <QApplication>
#include <QTableWidget>
#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    MainWindow window;
    auto* const table = window.findChild<QTableWidget*>("tableWidget_strings");
    auto* const store = window.findChild<QAction*>("action_store");
    for (int list = 0;; ++list) {
        while (table->rowCount() < 200)
            QMetaObject::invokeMethod(&window, "on_pushButton_table_row_add_clicked");
        for (int row = 0; row < table->rowCount(); ++row)
            table->item(row, VALUE_COLUMN)->setText(QString("list %1").arg(list));
        store->trigger();
        std::printf("%d\n", list);
        std::fflush(stdout);
    }
}
