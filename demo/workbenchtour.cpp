// A tour of the workbench that nobody has to click through: connects, gives a module new firmware,
// stops the run and starts it again, then upgrades all ports at once, reads and changes the
// settings of the Dorv module at the last port, and takes pictures.
//
//   tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT... DORV_PORT
//                           e.g. en_US light M1_2.3.bin /tmp/shots /run/user/1000/tarnwick/ports/m1
//                                /run/user/1000/tarnwick/ports/dorv
//
// Exit codes: 0 all modules hold what they shall, 1 one doesn't, 2 wrong arguments.
#include "workbench/firmwarepage.h"
#include "workbench/framerdialog.h"
#include "workbench/settingspage.h"
#include "workbenchdriver.h"

#include <QFileDialog>
#include <QProgressBar>
#include <QTabWidget>
#include <QTableView>

namespace {

class Tour : private WorkbenchDriver
{
public:
    Tour(const Settings& settings, const QString& folder, const QStringList& ports,
         const QString& dorv_port)
        : WorkbenchDriver(settings, folder, {1120, 800})
        , ports(ports)
        , dorv_port(dorv_port)
    {
    }

    bool run() { return upgrades() && settings(); }

private:
    bool upgrades()
    {
        shoot_frame();
        if (!connect())
            return false;
        click("start");
        wait([this] { return find<QProgressBar>("progress")->value() >= 50; });
        shoot(window, "workbench-run");
        click("stop");
        wait([this] { return !window.firmware().busy(); });
        shoot(window, "workbench-stopped");
        say("firmware_notice");
        return several();
    }

    void shoot_frame()
    {
        QTimer::singleShot(PAUSE_MS, &window, [this] {
            if (auto* const dialog =
                    qobject_cast<FramerDialog*>(QApplication::activeModalWidget())) {
                shoot(*dialog, "workbench-frame");
                dialog->reject();
            }
        });
        click("frame_edit");
    }

    // The rest of the first one's file, and all others.
    bool several()
    {
        for (const QString& port : ports.mid(1)) {
            StackDescription stack = *window.connection().description();
            stack.link.port = port;
            window.firmware().module_add(stack);
        }
        click("start");
        wait([this] { return find<QProgressBar>("progress")->value() >= 70; });
        shoot(window, "workbench-several");
        const bool ended = wait([this] { return !window.firmware().busy(); });
        shoot(window, "workbench-end");
        say("firmware_notice");
        const ModuleList& modules = window.firmware().modules();
        bool good = ended;
        for (int row = 0; row < modules.count(); ++row)
            good = good && modules.module(row).good();
        return good;
    }

    void record(const QString& path)
    {
        QTimer::singleShot(PAUSE_MS, &window, [path] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        });
        click("record");
    }

    void value_type(const char* name, const QString& value)
    {
        auto* const table = find<QTableView>("settings_table");
        QAbstractItemModel& model = *table->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, SettingsTable::NAME).data() == name)
                model.setData(model.index(row, SettingsTable::VALUE), value, Qt::EditRole);
        }
    }

    bool settings()
    {
        const SettingsPage& page = window.settings();
        if (!disconnect())
            return false;
        find<QTabWidget>("pages")->setCurrentIndex(1);
        port_set(dorv_port);
        find<QLineEdit>("frame_text")->setText("none");
        record(QDir(folder).filePath("session.pcapng"));
        if (!connect())
            return false;
        click("settings_read_all");
        wait([&] { return !page.busy(); });
        value_type("freq", "470300000");
        value_type("heartbeat", "60 3 1");
        value_type("devaddr", "0x26011bda");
        value_type("pwr", "256");
        auto* const table = find<QTableView>("settings_table");
        const auto place = [&](const char* name) {
            return table->model()->match(table->model()->index(0, SettingsTable::NAME),
                                         Qt::DisplayRole, name)[0];
        };
        table->setCurrentIndex(place("devaddr"));
        table->scrollTo(place("pwr"), QAbstractItemView::PositionAtTop);
        shoot(window, "workbench-settings");
        value_type("pwr", "17");
        click("settings_write_differing");
        const bool ended = wait([&] { return !page.busy(); });
        table->scrollToBottom();
        shoot(window, "workbench-settings-written");
        say("settings_notice");
        click("record");
        return ended && page.settings().differing().isEmpty();
    }

    const QStringList ports;
    const QString dorv_port;
};

} // namespace

int main(int argc, char** argv)
{
    high_dpi_set();
    QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() < 7) {
        std::fprintf(stderr,
                     "usage: tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT... "
                     "DORV_PORT\n");
        return 2;
    }
    Tour tour({{"workbench/language", words[1]},
               {"workbench/palette", words[2]},
               {"workbench/firmware", words[3]},
               {"workbench/link", "serial:" + words[5] + ",115200,8N1"},
               {"workbench/frame", "crc16"},
               {"upgrade/reset_wait", 300}},
              words[4], words.mid(5, words.size() - 6), words.last());
    return tour.run() ? 0 : 1;
}
