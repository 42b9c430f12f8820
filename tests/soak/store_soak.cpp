// A window that stores its settings is killed at any moment, again and again: what it leaves is one
// whole set of settings, the old or the new one, and the next window stores as before.
//
//   store_soak [kills]
#include "terminal/stringcolumns.h"
#include "windowsoak.h"

#include <QAction>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <random>

namespace {

constexpr int ROWS = 200;

// Stores set after set, from the given number on, and prints the number of each.
[[noreturn]] void store_for_ever(int set)
{
    MainWindow window;
    auto* const table = window.findChild<QTableWidget*>("tableWidget_strings");
    while (table->rowCount() < ROWS)
        QMetaObject::invokeMethod(&window, "on_pushButton_table_row_add_clicked");
    for (;; ++set) {
        window.findChild<QSpinBox*>("spinBox_send_count")->setValue(set);
        for (int row = 0; row < ROWS; ++row)
            table->item(row, VALUE_COLUMN)->setText(QString::number(set));
        window.findChild<QAction*>("action_store")->trigger();
        std::printf("%d\n", set);
        std::fflush(stdout);
    }
}

// The one set that the file holds, or -1.
int set_stored()
{
    const QSettings file("tarnwick.ini", QSettings::IniFormat);
    QStringList sets = {file.value("serial_tool/send_count").toString()};
    for (const QString& key : file.allKeys().filter(QRegularExpression("^strings/.*/value$")))
        sets += file.value(key).toString();
    const bool whole = sets.size() == 1 + ROWS && sets.removeDuplicates() == ROWS &&
                       file.value("somebody/else") == "kept";
    return whole ? sets[0].toInt() : -1;
}

class StoreSoak : public WindowSoak
{
public:
    void run(int kills)
    {
        configure("somebody/else", "kept");
        std::mt19937 random(1);
        int done = 0; // the last set that is known to be stored
        int news = 0;
        for (int kill = 0; kill < kills; ++kill) {
            QProcess storer;
            const auto read_done = [&] {
                while (storer.canReadLine())
                    done = storer.readLine().toInt();
            };
            storer.start(QCoreApplication::applicationFilePath(),
                         {"--store", QString::number(done + 2)});
            for (const int last = done + 4; done < last; read_done())
                if (!storer.waitForReadyRead(PATIENCE_MS))
                    return expect(false, "the next window doesn't store");
            QThread::usleep(random() % 20000); // a few stores
            storer.kill();
            storer.waitForFinished();
            read_done();
            const int stored = set_stored();
            news += stored == done + 1;
            expect(stored == done || stored == done + 1,
                   QString("killed after set %1, the file holds %2").arg(done).arg(stored));
        }
        const int files = int(QDir().entryList(QDir::Files | QDir::Hidden).size());
        std::printf("%d kills: %d files with the new settings, %d torn; left lying: %d files\n",
                    kills, news, faults, files - 1);
    }
};

} // namespace

int main(int argc, char** argv)
{
    if (argc > 2) {
        const QApplication application(argc, argv);
        store_for_ever(atoi(argv[2]));
    }
    return soak_main<StoreSoak>(argc, argv, 200);
}
