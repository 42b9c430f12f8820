// What finding text costs: a receive area full of text, and somebody who looks for something in it,
// while nothing comes in and while data does.
#include "stallwatch.h"
#include "terminal/findbar.h"
#include "terminal/receivearea.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int CHUNK = 512;

struct Work
{
    const char* name;
    const char* piece;  // what the text repeats
    const char* wanted; // what is looked for
};

constexpr Work WORKS[] = {
    {"stream, not there", "0123456789abcdefghijklmnopqrstuvwxyz", "no such text"},
    {"stream, many hits", "0123456789abcdefghijklmnopqrstuvwxyz", "d"},
    {"hexadecimal, each blank", "01 03 00 FF ", " "},
    {"worst case", "aaaaaaaaaaaaaaaa",
     "baaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
     "aaa"},
    {"lines of 36, not there", "0123456789abcdefghijklmnopqrstuvwxy\n", "no such text"},
    {"lines of 36, a hit in each", "0123456789abcdefghijklmnopqrstuvwxy\n", "xy"},
};

class Bench
{
public:
    Bench(const Work& wanted, int megabytes)
        : work(wanted)
    {
        area.setReadOnly(true);
        area.resize(900, 500);
        area.show();
        const QString part = QString(work.piece).repeated((1 << 20) / int(qstrlen(work.piece)));
        for (int i = 0; i < megabytes; ++i)
            area.append_chunk(QString(), part);
        QCoreApplication::processEvents();
    }

    void run()
    {
        FindBar bar(&area);
        bar.open();
        auto* const line = bar.findChild<QLineEdit*>("findText");
        const auto* const count = bar.findChild<QLabel*>("findCount");
        StallWatch stall;
        QElapsedTimer clock;

        clock.start();
        line->setText(work.wanted);
        wait_while(
            [&] { return count->text().isEmpty() || count->text().endsWith(QChar(0x2026)); });
        const double search_s = double(clock.elapsed()) / 1e3;
        const QString search_stall = text_of(stall);

        stall.reset();
        for (int i = 0; i < 50; ++i) {
            i % 2 == 0 ? bar.find_next() : bar.find_previous();
            wait_ms(2);
        }
        const QString step_stall = text_of(stall);

        // 300 KB/s, a fast USB adapter at 3 Mbit/s, over a search that begins anew.
        stall.reset();
        QTimer data;
        const QString chunk = QString(work.piece).repeated(CHUNK / int(qstrlen(work.piece)) + 1);
        QObject::connect(&data, &QTimer::timeout, [&] { area.append_chunk(QString(), chunk); });
        data.setTimerType(Qt::PreciseTimer);
        data.start(CHUNK / 300);
        line->clear();
        line->setText(work.wanted);
        wait_ms(2000);
        std::printf("%-28s %10.2f %14s %14s %14s   %s\n", work.name, search_s,
                    qPrintable(search_stall), qPrintable(step_stall), qPrintable(text_of(stall)),
                    qPrintable(count->text()));
        std::fflush(stdout);
    }

private:
    static QString text_of(const StallWatch& stall)
    {
        return QString("%1 (%2)")
            .arg(stall.worst_ms(), 0, 'f', 1)
            .arg(stall.worst_cpu_ms(), 0, 'f', 1);
    }
    template <typename Condition> static void wait_while(Condition condition)
    {
        while (condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    static void wait_ms(int ms)
    {
        QElapsedTimer clock;
        clock.start();
        wait_while([&] { return clock.elapsed() < ms; });
    }

    const Work& work;
    ReceiveArea area;
};

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int megabytes = argc > 1 ? std::atoi(argv[1]) : 64;
    if (argc > 2 || megabytes <= 0) {
        std::fprintf(stderr, "usage: bench_find [MILLIONS OF CHARACTERS]\n");
        return EXIT_FAILURE;
    }
    std::printf("%d million characters; longest stall of the event loop in ms, in brackets "
                "of the CPU's time\n\n%-28s %10s %14s %14s %14s   %s\n",
                megabytes, "work", "search, s", "search", "steps", "with data", "count");
    for (const Work& work : WORKS)
        Bench(work, megabytes).run();
    return EXIT_SUCCESS;
}
