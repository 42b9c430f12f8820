// A window that stores its settings is killed in the middle of it, again and again: what it leaves
// is one whole set of settings, the old or the new one, and the next window stores as before.
//
//   store_soak [kills]
#include "mainwindow.h"
#include "sandbox.h"
#include "stringcolumns.h"
#include "wait.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSettings>
#include <QSpinBox>
#include <QTableWidget>
#include <cstdio>
#include <random>

namespace {

constexpr int ROWS = 200;

// Stores set after set, from the given number on, and says when it begins and ends.
[[noreturn]] void store_for_ever(int set)
{
    MainWindow window;
    auto* const table = window.findChild<QTableWidget*>("tableWidget_strings");
    while (table->rowCount() < ROWS)
        QMetaObject::invokeMethod(&window, "on_pushButton_table_row_add_clicked");
    for (;; ++set) {
        const QString text = QString::number(set);
        window.findChild<QSpinBox*>("spinBox_send_count")->setValue(set);
        window.findChild<QPlainTextEdit*>("plainTextEdit_send")->setPlainText(text);
        for (int row = 0; row < ROWS; ++row)
            table->item(row, VALUE_COLUMN)->setText(text);
        std::printf("begin %d\n", set);
        std::fflush(stdout);
        window.findChild<QAction*>("action_store")->trigger();
        std::printf("done %d\n", set);
        std::fflush(stdout);
    }
}

// The one set that the file holds, or -1.
int set_stored()
{
    QSettings file("tarnwick.ini", QSettings::IniFormat);
    QStringList texts = {file.value("serial_tool/send_count").toString(),
                         file.value("serial_tool/ascii").toString()};
    const bool whole = file.status() == QSettings::NoError &&
                       file.value("somebody/else") == "kept" &&
                       file.beginReadArray("strings") == ROWS;
    for (int row = 0; row < ROWS; ++row) {
        file.setArrayIndex(row);
        texts += file.value("value").toString();
    }
    texts.removeDuplicates();
    return whole && texts.size() == 1 ? texts[0].toInt() : -1;
}

class StoreSoak
{
public:
    int run(int kills)
    {
        QSettings("tarnwick.ini", QSettings::IniFormat).setValue("somebody/else", "kept");
        int faults = 0;
        for (int kill = 0; kill < kills; ++kill) {
            if (!kill_in_a_store())
                return 1;
            const int stored = set_stored();
            olds += stored == done;
            news += stored == begun && begun != done;
            in_store += begun != done;
            if (stored == done || stored == begun)
                continue;
            ++faults;
            std::printf("FAULT: killed in set %d after %d, the file holds %d\n", begun, done,
                        stored);
        }
        std::printf("%d kills, %d of them in a store of %.1f ms: %d files with the old settings, "
                    "%d with the new ones, %d torn; left lying: %d files\n",
                    kills, in_store, store_ms, olds - (kills - in_store), news, faults,
                    int(QDir().entryList(QDir::Files | QDir::Hidden).size()) - 1);
        return faults == 0 ? 0 : 1;
    }

private:
    bool kill_in_a_store()
    {
        QProcess storer;
        storer.start(QCoreApplication::applicationFilePath(),
                     {"--store", QString::number(begun + 1)});
        QElapsedTimer clock;
        const int last = begun + 3 + int(random() % 3);
        while (begun < last) {
            if (!storer.waitForReadyRead(PATIENCE_MS)) {
                std::printf("FAULT: no store any more after set %d\n", begun);
                return false;
            }
            while (storer.canReadLine())
                take(storer.readLine(), clock);
        }
        QThread::usleep(static_cast<unsigned long>(store_ms * 1000) * (random() % 1000) / 1000);
        storer.kill();
        storer.waitForFinished();
        while (storer.canReadLine())
            take(storer.readLine(), clock);
        return true;
    }

    void take(const QByteArray& line, QElapsedTimer& clock)
    {
        const int set = line.mid(line.indexOf(' ')).trimmed().toInt();
        if (line.startsWith("begin")) {
            begun = set;
            clock.start();
        } else {
            done = set;
            store_ms = double(clock.nsecsElapsed()) / 1e6;
        }
    }

    Sandbox sandbox;
    std::mt19937 random{1};
    int begun = 0, done = 0;
    double store_ms = 0;
    int in_store = 0, olds = 0, news = 0;
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc > 2) {
        const QApplication application(argc, argv);
        store_for_ever(atoi(argv[2]));
    }
    const QCoreApplication application(argc, argv);
    return StoreSoak().run(argc > 1 ? atoi(argv[1]) : 200);
}
