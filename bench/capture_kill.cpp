// A recorder is killed at random moments: is all in the file that it has promised?
#include "capture.h"
#include "capture/capturereader.h"
#include "capture/capturesurvey.h"
#include "capture/capturewriter.h"
#include "systemwatch.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int BYTES_PER_SECOND = 92160; // 921600 bit/s, 8N1
constexpr milliseconds PROMISE{20};

// Byte i of the stream that is fed to recorders.
char pattern(std::int64_t i)
{
    return char(i * 2654435761u >> 13);
}

// What a recorder has read, by time; shared with it, so that it outlives its kill.
struct Progress
{
    static constexpr int MOST = 1 << 16;
    struct Step
    {
        std::int64_t time_ns;
        std::int64_t bytes;
    };

    std::atomic<int> count;
    SystemDelays delays;
    Step steps[MOST];

    std::int64_t bytes_before(std::int64_t time_ns) const
    {
        std::int64_t bytes = 0;
        for (int i = 0; i < count && steps[i].time_ns < time_ns; ++i)
            bytes = steps[i].bytes;
        return bytes;
    }
};

std::int64_t now_ns()
{
    return std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
}

// Where we may, what other programs do is kept out of it.
void ask_for_real_time()
{
    const sched_param priority = {5};
    sched_setscheduler(0, SCHED_FIFO, &priority);
}

[[noreturn]] void record_until_killed(int port, const QString& path, Progress& progress)
{
    ask_for_real_time();
    const SystemWatch watch(QFileInfo(path).path().toStdString(), progress.delays);
    CaptureWriter writer;
    if (!writer.open(path, {}))
        _exit(1);
    writer.add_port({});
    std::int64_t bytes = 0;
    while (true) {
        char piece[4096];
        const ssize_t size = read(port, piece, sizeof piece);
        if (size <= 0)
            _exit(2);
        const std::int64_t time_ns = now_ns();
        writer.record(CaptureRecord::received(capture_time_ns(), QByteArray(piece, int(size))));
        bytes += size;
        const int count = progress.count;
        progress.steps[count] = {time_ns, bytes};
        progress.count = count + 1;
    }
}

// Feeds the port at its rate for that long.
void feed(int port, milliseconds duration)
{
    const auto begin = Clock::now();
    std::int64_t sent = 0;
    while (ms_since(begin) < double(duration.count())) {
        QByteArray piece;
        while (double(sent) < ms_since(begin) * BYTES_PER_SECOND / 1000 && piece.size() < 2048)
            piece.append(pattern(sent++));
        if (!piece.isEmpty() && write(port, piece.constData(), std::size_t(piece.size())) < 0)
            return;
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
}

struct Pty
{
    Pty()
    {
        controller = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        grantpt(controller);
        unlockpt(controller);
        device = open(ptsname(controller), O_RDWR | O_NOCTTY);
        termios settings = {};
        tcgetattr(device, &settings);
        cfmakeraw(&settings);
        tcsetattr(device, TCSANOW, &settings);
    }
    ~Pty()
    {
        close(controller);
        close(device);
    }

    int controller;
    int device;
};

// True when the bytes of all records are the beginning of the stream; how many they are.
bool is_pattern(const QString& path, std::int64_t& count)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    CaptureReader reader(file);
    count = 0;
    for (auto found = reader.next(); found != CaptureReader::Found::End; found = reader.next()) {
        if (found != CaptureReader::Found::Record)
            continue;
        for (const char byte : reader.record().bytes)
            if (byte != pattern(count++))
                return false;
    }
    return true;
}

int packets_of_tshark(const QString& path)
{
    QProcess process;
    process.start("tshark", {"-r", path, "-T", "fields", "-e", "rtacser.eventtype"});
    process.waitForFinished(-1);
    return int(process.readAllStandardOutput().count('\n'));
}

struct Killed
{
    int torn = 0;
    int empty = 0; // killed before anything was written
    int busy = 0;
    int late = 0; // of those
    std::int64_t bytes = 0;
};

void check_killed(const QString& path, std::int64_t needed, const SystemDelays& delays, int run,
                  Killed& killed)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const CaptureSurvey survey = CaptureSurvey::of(file);
    std::int64_t recorded = 0;
    expect(is_pattern(path, recorded), QStringLiteral("run %1: other bytes").arg(run));
    const bool busy = delays.busy();
    killed.busy += busy;
    if (busy && recorded < needed) {
        ++killed.late;
        std::printf("  run %d: %lld of %lld bytes; a processor came after %.1f ms, the disk after "
                    "%.1f ms\n",
                    run, static_cast<long long>(recorded), static_cast<long long>(needed),
                    double(delays.processor_ns) / 1e6, double(delays.disk_ns) / 1e6);
    }
    killed.bytes += busy ? 0 : needed;
    expect(busy || recorded >= needed,
           QStringLiteral("run %1: %2 of %3 bytes that were read in time")
               .arg(run)
               .arg(recorded)
               .arg(needed));
    killed.empty += file.size() == 0;
    expect(survey.section_count == (file.size() > 0 ? 1u : 0u) &&
               survey.damage_count == (survey.torn_end ? 1u : 0u),
           QStringLiteral("run %1: damaged, %2 bytes").arg(run).arg(file.size()));
    killed.torn += survey.torn_end.has_value();
    expect(packets_of_tshark(path) == int(survey.record_count),
           QStringLiteral("run %1: tshark reads other packets").arg(run));
}

} // namespace

void kill_recorders(int runs)
{
    void* const shared =
        mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& progress = *static_cast<Progress*>(shared);
    const QTemporaryDir folder("kill-XXXXXX");
    const QString path = folder.filePath("session.pcapng");
    std::mt19937 random(1);
    Killed killed;
    for (int run = 0; run < runs; ++run) {
        QFile::remove(path);
        progress.count = 0;
        progress.delays.reset();
        const Pty pty;
        const pid_t recorder = fork();
        if (recorder == 0)
            record_until_killed(pty.device, path, progress);
        while (!QFile::exists(path))
            std::this_thread::sleep_for(milliseconds(1));
        feed(pty.controller, milliseconds(30 + random() % 500));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1000));
        const std::int64_t killed_ns = now_ns();
        kill(recorder, SIGKILL);
        waitpid(recorder, nullptr, 0);
        const std::int64_t needed =
            progress.bytes_before(killed_ns - std::chrono::nanoseconds(PROMISE).count());
        check_killed(path, needed, progress.delays, run, killed);
    }
    munmap(shared, sizeof(Progress));
    std::printf("kill: %d recorders killed, %d torn ends, %d files still empty\n", runs,
                killed.torn, killed.empty);
    std::printf("  %d on a system with time: %lld bytes read more than %lld ms before, all there "
                "unless said\n",
                runs - killed.busy, static_cast<long long>(killed.bytes),
                static_cast<long long>(PROMISE.count()));
    std::printf("  %d where a thread waited more than %lld ms for a processor or the disk: %d lack "
                "some\n",
                killed.busy, static_cast<long long>(SystemDelays::BUSY_NS / 1'000'000),
                killed.late);
}
