// Firmware for one simulated module, and then for many at once, in the workbench's window: how much
// longer the many take, and the longest stall of the window meanwhile.
//
//   bench_modules [MODULES [BITS_PER_SECOND [KILOBYTES]]]
#include "stallwatch.h"
#include "workbench/connectionbar.h"
#include "workbench/firmwarepage.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace {
class Line
{
public:
    Line(int count, int rate, const QString& file)
        : rate(rate)
    {
        for (int number = 0; number < count; ++number)
            ports += module_start(number);
        const QString ini = folder.filePath("workbench.ini");
        {
            QSettings settings(ini, QSettings::IniFormat);
            settings.setValue("workbench/language", "en_US");
            settings.setValue("workbench/firmware", file);
            settings.setValue("workbench/link", "serial:" + ports[0]);
            settings.setValue("workbench/frame", "crc16");
            settings.setValue("upgrade/reset_wait", 300);
        }
        window = std::make_unique<WorkbenchWindow>(ini);
        window->resize(1120, 800);
        window->show();
    }
    ~Line()
    {
        window.reset();
        for (const auto& simulator : simulators) {
            simulator->terminate();
            simulator->waitForFinished();
        }
    }

    // Gives the seconds of the slowest module, or a negative value when one failed.
    double run()
    {
        click("connect");
        wait_while(
            [&] { return window->connection().link().state() == LinkWorker::State::Opening; });
        for (const QString& port : ports.mid(1)) {
            StackDescription stack = *window->connection().description();
            stack.link.port = port;
            window->firmware().module_add(stack);
        }
        QCoreApplication::processEvents();
        stall.reset();
        click("start");
        wait_while([&] { return window->firmware().busy(); });
        const ModuleList& modules = window->firmware().modules();
        double slowest = 0;
        for (int row = 0; row < modules.count(); ++row) {
            if (!modules.module(row).good())
                return -1;
            slowest = std::max(slowest, double(modules.module(row).elapsed_ms()) / 1000);
        }
        return slowest;
    }

    StallWatch stall;

private:
    QString module_start(int number)
    {
        simulators.push_back(std::make_unique<QProcess>());
        QProcess& simulator = *simulators.back();
        simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        simulator.start(TARNWICK_SIM, {"boot", "--name", "m" + QString::number(number), "--baud",
                                       QString::number(rate), "--image",
                                       folder.filePath(QString::number(number))});
        while (!simulator.canReadLine() && simulator.waitForReadyRead()) {
        }
        return QString::fromLocal8Bit(simulator.readLine()).trimmed();
    }
    void click(const char* name) const { window->findChild<QPushButton*>(name)->click(); }
    template <typename Condition> static void wait_while(Condition condition)
    {
        while (condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    const int rate;
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<QProcess>> simulators;
    QStringList ports;
    std::unique_ptr<WorkbenchWindow> window;
};

bool file_make(const QString& path, int size)
{
    std::mt19937 random(1);
    QByteArray content;
    for (int i = 0; i < size; ++i)
        content += char(random());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == size;
}
} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder.path())); // the ports are there
    const QApplication application(argc, argv);
    const int most = argc > 1 ? std::atoi(argv[1]) : 16;
    const int rate = argc > 2 ? std::atoi(argv[2]) : 115200;
    const int kilobytes = argc > 3 ? std::atoi(argv[3]) : 256;
    const QString file = folder.filePath("M1_2.bin");
    if (argc > 4 || most < 1 || rate < 1 || kilobytes < 1 || !file_make(file, kilobytes * 1024)) {
        std::fprintf(stderr, "usage: bench_modules [MODULES [BITS_PER_SECOND [KILOBYTES]]]\n");
        return EXIT_FAILURE;
    }
    std::printf("%d KB at %d bits/s; longest stall in ms, in brackets of the CPU's time\n\n"
                "modules  seconds  of one's time  stall\n",
                kilobytes, rate);
    double one_s = 0;
    for (const int count : {1, most}) {
        Line line(count, rate, file);
        const double seconds = line.run();
        if (seconds < 0) {
            std::fprintf(stderr, "not all of %d modules hold the file\n", count);
            return EXIT_FAILURE;
        }
        one_s = count == 1 ? seconds : one_s;
        std::printf("%7d %8.1f %14.3f  %.1f (%.1f)\n", count, seconds, seconds / one_s,
                    line.stall.worst_ms(), line.stall.worst_cpu_ms());
        std::fflush(stdout);
    }
    return EXIT_SUCCESS;
}
