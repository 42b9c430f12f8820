// The sending side of a measurement.
#include "receive_case.h"

#include <QByteArray>
#include <QFile>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int LINE_LENGTH = 80;
constexpr int PATTERN_SIZE = (LINE_LENGTH + 1) * 512; // whole lines, whole writes

[[noreturn]] void give_up(const char* what)
{
    std::perror(what);
    std::exit(EXIT_FAILURE);
}

QByteArray pattern_of(Text text)
{
    std::mt19937 random(1); // the same bytes in each run
    const bool any_byte = text == Text::Hexadecimal;
    std::uniform_int_distribution<int> byte(any_byte ? 0 : ' ', any_byte ? 255 : '~');
    QByteArray pattern(PATTERN_SIZE, '\0');
    for (int i = 0; i < pattern.size(); ++i) {
        const bool breaks = text == Text::Lines && i % (LINE_LENGTH + 1) == LINE_LENGTH;
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

struct Steps
{
    int size;
    qint64 bytes_per_second; // 0 for no limit
};

Steps steps_of(Pace pace)
{
    switch (pace) {
    case Pace::Fastest:
        break;
    case Pace::Steady:
        return {512, 300000};
    case Pace::Baud:
        return {64, 11520};
    }
    return {512, 0};
}

void send(int master, const QByteArray& pattern, qint64 bytes, Pace pace)
{
    using Clock = std::chrono::steady_clock;
    const Steps steps = steps_of(pace);
    const Clock::time_point begin = Clock::now();
    for (qint64 done = 0; done < bytes;) {
        const auto size = size_t(std::min<qint64>(steps.size, bytes - done));
        const ssize_t n = write(master, pattern.constData() + done % PATTERN_SIZE, size);
        if (n <= 0)
            give_up("write");
        done += n;
        if (steps.bytes_per_second > 0)
            std::this_thread::sleep_until(
                begin + std::chrono::microseconds(done * 1000000 / steps.bytes_per_second));
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
    send(master, pattern, wanted.bytes, wanted.pace);
    await_report(reports[0], &signal, 1);
    send(master, pattern, wanted.steady_bytes, Pace::Steady);
    Measured measured;
    await_report(reports[0], &measured, sizeof measured);

    close(reports[0]);
    close(master);
    waitpid(reader, nullptr, 0);
    return measured;
}
