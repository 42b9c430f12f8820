// Any bytes as the window's configuration file: what the window makes of them it stores, and shows
// the same from then on.

#include "mainwindow.h"
#include "settingkeys.h"
#include "windowfuzz.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>

static constexpr int MOST_ROWS = 200; // more only take time

static QStringList shown(const MainWindow& window)
{
    QStringList texts = {window.windowTitle()};
    for (const auto* box : window.findChildren<QCheckBox*>())
        texts += QString::number(int(box->checkState()));
    for (const auto* edit : window.findChildren<QLineEdit*>())
        texts += edit->text();
    for (const auto* edit : window.findChildren<QPlainTextEdit*>())
        texts += edit->toPlainText();
    const auto* const table = window.findChild<QTableWidget*>();
    for (int row = 0; row < table->rowCount(); ++row)
        for (int column = 0; column < table->columnCount(); ++column)
            if (const QTableWidgetItem* item = table->item(row, column))
                texts += item->text() + QString::number(int(item->checkState()));
    return texts;
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    FuzzApplication::start();
    write_file(ROOT_FILE, "[global]\ncfg_file=settings.ini\n");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QFile::remove("settings.ini");
    write_file("settings.ini", QByteArray(reinterpret_cast<const char*>(data), int(size)));
    {
        QSettings settings("settings.ini", QSettings::IniFormat);
        if (settings.beginReadArray(STRINGS) > MOST_ROWS)
            return 0;
    }
    QStringList first;
    {
        const MainWindow window;
        first = shown(window);
    }
    require(shown(MainWindow()) == first);
    return 0;
}
