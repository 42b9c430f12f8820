// What the window takes beside receiving: the accuracy of auto send, the answer to clicks while a
// file goes out, memory with a peer that never reads, a close before all is out, the rest after
// an unplug, and long lists.
#include "stallwatch.h"
#include "windowtest.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QTableWidget>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace {

double cpu_seconds()
{
    timespec t = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

double resident_mb()
{
    QFile file("/proc/self/statm");
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').at(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

class Bench : public WindowTest
{
public:
    void run()
    {
        window_start();
        auto_send();
        file_to_a_slow_reader();
        echo_to_nobody();
        close_before_the_bytes_are_out();
        unplug();
        window_end();
        for (const int rows : {8, 10000, 100000})
            long_list(rows);
    }

private:
    void TestBody() override {}

    void auto_send()
    {
        constexpr int INTERVAL_MS = 10, SECONDS = 10;
        port_open();
        type("0123456789");
        find<QSpinBox>("spinBox_send_interval")->setValue(INTERVAL_MS);
        QElapsedTimer clock;
        double last_write_ms = 0;
        int writes = 0;
        clock.start();
        check("checkBox_auto_send");
        while (clock.elapsed() < SECONDS * 1000 + INTERVAL_MS / 2) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
            if (const int now = pty.read_now().size() / 10) {
                writes += now;
                last_write_ms = double(clock.nsecsElapsed()) / 1e6;
            }
            usleep(200);
        }
        check("checkBox_auto_send", false);
        const double off_ms = last_write_ms - std::round(last_write_ms / INTERVAL_MS) * INTERVAL_MS;
        std::printf(
            "auto send, %d ms for %d s: %d writes of %d, the last one %+.2f ms off its time\n",
            INTERVAL_MS, SECONDS, writes, SECONDS * 1000 / INTERVAL_MS, off_ms);
    }

    void file_to_a_slow_reader()
    {
        constexpr int SIZE = 10 * 1000 * 1000, PAUSE_MS = 2;
        const QByteArray sent = mixed_bytes(SIZE);
        QFile file(sandbox.path("file"));
        file.open(QIODevice::WriteOnly);
        file.write(sent);
        file.close();
        answers.file = file.fileName();
        check("checkBox_send_file");
        StallWatch stalls;
        QByteArray got;
        QElapsedTimer clock, pause;
        clock.start();
        pause.start();
        click("pushButton_send");
        while (got.size() < SIZE * 9 / 10) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
            if (pause.elapsed() >= PAUSE_MS) {
                got += pty.read_now(4096);
                pause.start();
            }
        }
        const double seconds = double(clock.elapsed()) / 1000;
        const double worst_ms = stalls.worst_ms();
        clock.start();
        check("checkBox_send_file", false);
        const double stop_ms = double(clock.nsecsElapsed()) / 1e6;
        QByteArray rest;
        while (!(rest = pty.read(4096, 300)).isEmpty())
            got += rest;
        std::printf(
            "10 MB file to a slow reader: %.2f MB/s, longest stall %.1f ms, stopped in %.1f "
            "ms at %.2f MB, the peer's bytes are a prefix: %s\n",
            SIZE * 0.9 / 1e6 / seconds, worst_ms, stop_ms, got.size() / 1e6,
            sent.startsWith(got) ? "yes" : "NO");
        click("pushButton_open");
    }

    void echo_to_nobody()
    {
        port_open();
        check("checkBox_loop");
        const double before_mb = resident_mb();
        StallWatch stalls;
        const QByteArray block = mixed_bytes(16384);
        const auto open = [&] { return find<QPushButton>("pushButton_open")->text() == "&close"; };
        qint64 sent = 0;
        for (int done = 0; open() && sent < 64 * 1000 * 1000;) {
            const ssize_t n =
                ::write(pty.master_fd(), block.constData() + done, size_t(block.size() - done));
            sent += n > 0 ? n : 0;
            done = n > 0 ? int(done + n) % block.size() : done;
            QCoreApplication::processEvents();
        }
        std::printf(
            "loop with a peer that never reads: ended after %.1f MB by \"%s\", memory %+.1f "
            "MB, longest stall %.1f ms\n",
            double(sent) / 1e6, qPrintable(answers.boxes.value(0).section('|', 1)),
            resident_mb() - before_mb, stalls.worst_ms());
        check("checkBox_loop", false);
        while (!pty.read_now().isEmpty())
            ;
    }

    // The button ends a session whose peer takes nothing for 4 s, and opens the port again.
    void close_before_the_bytes_are_out()
    {
        configure("serialSettings/timeout", 4000);
        port_open();
        type(QString(100000, 'x'));
        click("pushButton_send");
        QCoreApplication::processEvents();
        StallWatch stalls;
        QElapsedTimer clock;
        clock.start();
        click("pushButton_open");
        QTest::qWait(500);
        std::printf("close with a peer that doesn't read, time-out 4000 ms: longest stall %.1f ms",
                    stalls.worst_ms());
        stalls.reset();
        port_open();
        QTest::qWait(500);
        std::printf(", the port is open again after %.1f s, longest stall %.1f ms\n",
                    double(clock.elapsed()) / 1000, stalls.worst_ms());
        click("pushButton_open");
        while (!pty.read(65536, 300).isEmpty())
            ;
        configure("serialSettings/timeout", 300);
        type("0123456789");
    }

    void unplug()
    {
        port_open();
        check("checkBox_auto_send");
        QTest::qWait(100);
        answers.boxes.clear();
        pty.hang_up();
        wait_until([this] { return !answers.boxes.isEmpty(); });
        QTest::qWait(100);
        // The watch that answers dialogs wakes up each millisecond; count what the window takes.
        const double before = cpu_seconds();
        QTest::qWait(2000);
        std::printf("unplugged in auto send: %d message, CPU in the 2 s after it %.1f %%\n",
                    answers.boxes.size(), (cpu_seconds() - before) * 50);
    }

    void long_list(int rows)
    {
        QByteArray file =
            "[global]\nlanguage=en_US\n[strings]\nsize=" + QByteArray::number(rows) + "\n";
        for (int row = 1; row <= rows; ++row)
            file += QByteArray::number(row) + "\\value=text " + QByteArray::number(row) + "\n";
        QFile ini("tarnwick.ini");
        ini.open(QIODevice::WriteOnly);
        ini.write(file);
        ini.close();
        QElapsedTimer clock;
        clock.start();
        window_start();
        QCoreApplication::processEvents();
        const qint64 start_ms = clock.restart();
        find<QTableWidget>("tableWidget_strings")->item(rows - 1, 2)->setText("changed");
        find<QAction>("action_store")->trigger();
        const qint64 store_ms = clock.restart();
        window_end();
        std::printf("list of %d rows: %lld ms to the window, %lld ms to store a change, %lld ms to "
                    "close\n",
                    rows, (long long)(start_ms), (long long)(store_ms),
                    (long long)(clock.elapsed()));
    }
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Bench().run();
    return 0;
}
