// The sending side of a measurement.
#include "receive_case.h"

#include <QByteArray>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int WRITE_SIZE = 512;
constexpr int PATTERN_SIZE = 81 * WRITE_SIZE; // whole lines, whole writes
constexpr int LINE_LENGTH = 80;

[[noreturn]] void give_up(const char* what)
{
    std::perror(what);
    std::exit(EXIT_FAILURE);
}

QByteArray pattern_of(Text text)
{
    std::mt19937 random(1); // the same bytes in each run
    const bool any_byte = text == Text::hexadecimal;
    std::uniform_int_distribution<int> byte(any_byte ? 0 : ' ', any_byte ? 255 : '~');
    QByteArray pattern(PATTERN_SIZE, '\0');
    for (int i = 0; i < pattern.size(); ++i) {
        const bool breaks = text == Text::lines && i % (LINE_LENGTH + 1) == LINE_LENGTH;
        pattern[i] = breaks ? '\n' : char(byte(random));
    }
    return pattern;
}

int open_raw_terminal(char* device, size_t size)
{
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, device, size) != 0)
        give_up("pseudo-terminal");
    termios raw = {};
    tcgetattr(master, &raw);
    cfmakeraw(&raw);
    tcsetattr(master, TCSANOW, &raw);
    return master;
}

void send(int master, const QByteArray& pattern, qint64 bytes)
{
    for (qint64 done = 0; done < bytes;) {
        const auto size = size_t(std::min<qint64>(WRITE_SIZE, bytes - done));
        const ssize_t n = write(master, pattern.constData() + done % PATTERN_SIZE, size);
        if (n <= 0)
            give_up("write");
        done += n;
    }
}

void send_slowly(int master, const QByteArray& pattern, qint64 bytes)
{
    constexpr long SECOND_NS = 1000000000;
    timespec next = {};
    clock_gettime(CLOCK_MONOTONIC, &next);
    for (qint64 done = 0; done < bytes; done += WRITE_SIZE) {
        send(master, pattern, std::min<qint64>(WRITE_SIZE, bytes - done));
        next.tv_nsec += SECOND_NS / SLOW_RATE * WRITE_SIZE;
        if (next.tv_nsec >= SECOND_NS) {
            next.tv_nsec -= SECOND_NS;
            ++next.tv_sec;
        }
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
    }
}

void await_report(int pipe, void* report, size_t size)
{
    if (read(pipe, report, size) != ssize_t(size))
        give_up("the reader ended without a report");
}

} // namespace

Measured measure(const Case& wanted)
{
    char device[128];
    const int master = open_raw_terminal(device, sizeof device);
    int reports[2];
    if (pipe2(reports, O_CLOEXEC) != 0)
        give_up("pipe");
    const pid_t reader = fork();
    if (reader < 0)
        give_up("fork");
    if (reader == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(master);
        close(reports[0]);
        _exit(read_and_report(wanted, device, reports[1]));
    }
    close(reports[1]);

    const QByteArray pattern = pattern_of(wanted.text);
    char signal = 0;
    await_report(reports[0], &signal, 1);
    send(master, pattern, wanted.bytes);
    await_report(reports[0], &signal, 1);
    send_slowly(master, pattern, wanted.slow_bytes);
    Measured measured;
    await_report(reports[0], &measured, sizeof measured);

    close(reports[0]);
    close(master);
    waitpid(reader, nullptr, 0);
    return measured;
}
