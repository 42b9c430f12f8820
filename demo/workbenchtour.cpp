// A tour of the workbench that nobody has to click through: connects, gives a module new firmware,
// stops the run and starts it again, then upgrades all ports at once, reads and changes the
// settings of the Dorv module at the last port, and takes pictures.
//
//   tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT... DORV_PORT
//                           e.g. en_US light M1_2.3.bin /tmp/shots /run/user/1000/tarnwick/ports/m1
//                                /run/user/1000/tarnwick/ports/dorv
//
// Exit codes: 0 all modules hold what they shall, 1 one doesn't, 2 wrong arguments.
#include "workbench/connectionbar.h"
#include "workbench/firmwarepage.h"
#include "workbench/framerdialog.h"
#include "workbench/settingspage.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>

namespace {

constexpr int PATIENCE_MS = 120000;
constexpr int PAUSE_MS = 100;

class Tour
{
public:
    Tour(const QString& ini_path, const QString& shots, const QStringList& ports,
         const QString& dorv_port)
        : window(ini_path)
        , shots(shots)
        , ports(ports)
        , dorv_port(dorv_port)
    {
        window.show();
        window.resize(1120, 800);
    }

    bool run() { return upgrades() && settings(); }

private:
    bool upgrades()
    {
        shoot_frame();
        click("connect");
        if (!wait([this] { return window.connection().link().state() == LinkWorker::State::Open; }))
            return false;
        click("start");
        wait([this] { return window.findChild<QProgressBar*>("progress")->value() >= 50; });
        shoot(window, "workbench-run");
        click("stop");
        wait([this] { return !window.firmware().busy(); });
        shoot(window, "workbench-stopped");
        say("firmware_notice");
        return several();
    }

    void click(const char* name) const
    {
        QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
    }
    void say(const char* name) const
    {
        const auto* const notice = window.findChild<QWidget*>(name);
        std::printf("%s\n", qPrintable(notice->findChild<QLabel*>("notice_text")->text()));
    }
    void shoot(QWidget& widget, const QString& name) const
    {
        QTest::qWait(PAUSE_MS);
        widget.grab().save(QDir(shots).filePath(name + ".png"));
    }
    bool wait(const std::function<bool()>& condition) const
    {
        return QTest::qWaitFor(condition, PATIENCE_MS);
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
        wait([this] { return window.findChild<QProgressBar*>("progress")->value() >= 70; });
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
        auto* const table = window.findChild<QTableView*>("settings_table");
        QAbstractItemModel& model = *table->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, SettingsTable::NAME).data() == name)
                model.setData(model.index(row, SettingsTable::VALUE), value, Qt::EditRole);
        }
    }

    bool settings()
    {
        using State = LinkWorker::State;
        const LinkWorker& link = window.connection().link();
        const SettingsPage& page = window.settings();
        click("connect");
        if (!wait([&] { return link.state() == State::Closed; }))
            return false;
        window.findChild<QTabWidget*>("pages")->setCurrentIndex(1);
        window.findChild<QLineEdit*>("link_text")->setText("serial:" + dorv_port + ",115200,8N1");
        window.findChild<QLineEdit*>("frame_text")->setText("none");
        record(QDir(shots).filePath("session.pcapng"));
        click("connect");
        if (!wait([&] { return link.state() == State::Open; }))
            return false;
        click("settings_read_all");
        wait([&] { return !page.busy(); });
        value_type("freq", "470300000");
        value_type("heartbeat", "60 3 1");
        value_type("devaddr", "0x26011bda");
        value_type("pwr", "256");
        auto* const table = window.findChild<QTableView*>("settings_table");
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

    WorkbenchWindow window;
    const QString shots;
    const QStringList ports;
    const QString dorv_port;
};

} // namespace

int main(int argc, char** argv)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() < 7) {
        std::fprintf(stderr,
                     "usage: tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT... "
                     "DORV_PORT\n");
        return 2;
    }
    const QTemporaryDir settings_folder;
    const QString ini = settings_folder.filePath("workbench.ini");
    {
        QSettings settings(ini, QSettings::IniFormat);
        settings.setValue("workbench/language", words[1]);
        settings.setValue("workbench/palette", words[2]);
        settings.setValue("workbench/firmware", words[3]);
        settings.setValue("workbench/link", "serial:" + words[5] + ",115200,8N1");
        settings.setValue("workbench/frame", "crc16");
        settings.setValue("upgrade/reset_wait", 300);
    }
    QDir().mkpath(words[4]);
    const QStringList ports = words.mid(5, words.size() - 6);
    return Tour(ini, words[4], ports, words.last()).run() ? 0 : 1;
}
