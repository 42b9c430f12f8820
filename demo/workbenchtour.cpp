// A tour of the workbench that nobody has to click through: connects, gives a module new firmware,
// stops the run and starts it again, then upgrades all ports at once, and takes pictures.
//
//   tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT...
//                           e.g. en_US light M1_2.3.bin /tmp/shots /run/user/1000/tarnwick/ports/m1
//
// Exit codes: 0 all modules hold the file, 1 one doesn't, 2 wrong arguments.
#include "workbench/connectionbar.h"
#include "workbench/firmwarepage.h"
#include "workbench/framerdialog.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
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
    Tour(const QString& ini_path, const QString& shots, const QStringList& ports)
        : window(ini_path)
        , shots(shots)
        , ports(ports)
    {
        window.show();
        window.resize(1120, 800);
    }

    bool run()
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
        say();
        return several();
    }

private:
    void click(const char* name) const
    {
        QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
    }
    void say() const
    {
        const auto* const notice = window.findChild<QWidget*>("firmware_notice");
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
        say();
        const ModuleList& modules = window.firmware().modules();
        bool good = ended;
        for (int row = 0; row < modules.count(); ++row)
            good = good && modules.module(row).good();
        return good;
    }

    WorkbenchWindow window;
    const QString shots;
    const QStringList ports;
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
    if (words.size() < 6) {
        std::fprintf(stderr,
                     "usage: tarnwick-workbench-tour LANGUAGE PALETTE FIRMWARE FOLDER PORT...\n");
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
    return Tour(ini, words[4], words.mid(5)).run() ? 0 : 1;
}
