// What captures promise, measured: `bench_capture [kill|flips|speed|full] [amount]`; without a word
// all of it, in small.
//
//   kill    a recorder at 921600 bit/s is killed at a random moment, so many times
//   flips   single bits of a recording are flipped, so many
//   speed   so many MB are recorded and read back
//   full    a disk is full, so many times: how soon is that reported
#include "capture/capturereader.h"
#include "capture/capturesurvey.h"
#include "capture/capturewriter.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int BYTES_PER_SECOND = 92160; // 921600 bit/s, 8N1
constexpr milliseconds PROMISE{20};
// When a thread of the recorder waits longer for a processor, the system is too busy for a promise.
constexpr std::int64_t BUSY_NS = 10'000'000;

int faults = 0;

void expect(bool good, const QString& what)
{
    faults += !good;
    if (!good)
        std::printf("FAULT: %s\n", qPrintable(what));
}

double ms_since(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double resident_mb()
{
    QFile file("/proc/self/statm");
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').at(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

QString percentiles(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const auto at = [&](double part) {
        return values[std::size_t(part * double(values.size() - 1))];
    };
    return QStringLiteral("median %1, 99 % %2, most %3")
        .arg(at(0.5), 0, 'f', 3)
        .arg(at(0.99), 0, 'f', 3)
        .arg(at(1), 0, 'f', 3);
}

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
    std::atomic<std::int64_t> late_ns; // the most that the system kept a thread waiting
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

// A thread that wants to run each millisecond: how late is it? No promise holds without a
// processor.
void watch_system(Progress& progress)
{
    for (std::int64_t due_ns = now_ns();; due_ns = now_ns() + 1'000'000) {
        while (now_ns() < due_ns)
            std::this_thread::sleep_for(milliseconds(1));
        progress.late_ns = std::max<std::int64_t>(progress.late_ns, now_ns() - due_ns);
    }
}

[[noreturn]] void record_until_killed(int port, const QString& path, Progress& progress)
{
    const std::int64_t begun_ns = now_ns();
    std::thread([&] {
        progress.late_ns = now_ns() - begun_ns;
        watch_system(progress);
    }).detach();
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
    int busy = 0;
    int late = 0; // of those
    std::int64_t bytes = 0;
};

void check_killed(const QString& path, std::int64_t needed, bool busy, int run, Killed& killed)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const CaptureSurvey survey = CaptureSurvey::of(file);
    std::int64_t recorded = 0;
    expect(is_pattern(path, recorded), QStringLiteral("run %1: other bytes").arg(run));
    killed.busy += busy;
    killed.late += busy && recorded < needed;
    killed.bytes += busy ? 0 : needed;
    expect(busy || recorded >= needed,
           QStringLiteral("run %1: %2 of %3 bytes that were read in time")
               .arg(run)
               .arg(recorded)
               .arg(needed));
    expect(survey.section_count == 1 && survey.damage_count == (survey.torn_end ? 1u : 0u),
           QStringLiteral("run %1: damaged").arg(run));
    killed.torn += survey.torn_end.has_value();
    expect(packets_of_tshark(path) == int(survey.record_count),
           QStringLiteral("run %1: tshark reads other packets").arg(run));
}

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
        progress.late_ns = 0;
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
        check_killed(path, needed, progress.late_ns > BUSY_NS, run, killed);
    }
    munmap(shared, sizeof(Progress));
    std::printf("kill: %d recorders killed, %d torn ends\n", runs, killed.torn);
    std::printf("  %d on a system with time: %lld bytes read more than %lld ms before, all there "
                "unless said\n",
                runs - killed.busy, static_cast<long long>(killed.bytes),
                static_cast<long long>(PROMISE.count()));
    std::printf("  %d where a thread waited more than %lld ms for a processor: %d lack some\n",
                killed.busy, static_cast<long long>(BUSY_NS / 1'000'000), killed.late);
}

QByteArray sample_file(QMap<int, QString>& fields)
{
    const QTemporaryDir folder("flips-XXXXXX");
    const QString path = folder.filePath("session.pcapng");
    CaptureWriter writer;
    PcapngSection section;
    section.application = "Tarnwick bench";
    section.comments.append("serial:ttyUSB0,921600,8N1 crc16");
    writer.open(path, section);
    PcapngInterface port;
    port.name = "ttyUSB0";
    port.description = "921600,8N1";
    port.speed = 921600;
    writer.add_port(port);
    writer.record(CaptureRecord::remark(capture_time_ns(), "opened"));
    std::mt19937 random(2);
    for (int i = 0; i < 200; ++i) {
        QByteArray bytes;
        for (unsigned n = random() % 200 + 1; n > 0; --n)
            bytes.append(char(random()));
        writer.record(i % 2 == 0 ? CaptureRecord::sent(capture_time_ns(), bytes)
                                 : CaptureRecord::received(capture_time_ns(), bytes));
    }
    writer.record(CaptureRecord::remark(capture_time_ns(), "closed"));
    writer.close();
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    // The field at each offset that begins one, for a report of what isn't guarded.
    CaptureReader reader(file);
    bool first = true;
    for (auto found = reader.next(); found != CaptureReader::Found::End; found = reader.next()) {
        const int at = int(reader.offset());
        fields[at] = "frame of a block, fields, options that are guarded";
        if (found == CaptureReader::Found::Section)
            fields[at + 24] = "options of the section";
        if (found == CaptureReader::Found::Port)
            fields[at + 16] = "options of the port: name, settings, rate";
        if (found != CaptureReader::Found::Record)
            continue;
        fields[at + 16] = "nanoseconds within a microsecond";
        fields[at + 20] = "bytes of a packet";
        if (reader.record().event == CaptureEvent::StatusChange)
            fields[at + 40] = first ? "options of the first record" : "comment, direction of it";
        first = false;
    }
    file.seek(0);
    return file.readAll();
}

void flip_bits(int flips)
{
    QMap<int, QString> fields;
    QByteArray file = sample_file(fields);
    std::mt19937 random(3);
    QMap<QString, int> unseen;
    int found = 0;
    for (int i = 0; i < flips; ++i) {
        const int bit = int(random() % unsigned(file.size() * 8));
        file[bit / 8] = char(file[bit / 8] ^ 1 << bit % 8);
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        if (CaptureSurvey::of(buffer).damage_count > 0)
            ++found;
        else
            ++unseen[*std::prev(fields.upperBound(bit / 8))];
        file[bit / 8] = char(file[bit / 8] ^ 1 << bit % 8);
    }
    std::printf("flips: %d of %d single bits found in a file of %d bytes\n", found, flips,
                int(file.size()));
    for (auto row = unseen.begin(); row != unseen.end(); ++row) {
        std::printf("  not seen: %5d  %s\n", row.value(), qPrintable(row.key()));
        expect(!row.key().contains("guarded") && !row.key().contains("packet"), row.key());
    }
}

void record_much(int megabytes)
{
    constexpr int PIECE = 4096;
    const QTemporaryDir folder("speed-XXXXXX");
    const QString path = folder.filePath("session.pcapng");
    QByteArray noise(1 << 20, '\0');
    std::mt19937 random(4);
    std::generate(noise.begin(), noise.end(), [&] { return char(random()); });
    QCryptographicHash handed(QCryptographicHash::Sha256);
    CaptureWriter writer;
    expect(bool(writer.open(path, {})), "no file");
    writer.add_port({});
    std::vector<double> costs;
    double early_mb = 0;
    auto begin = Clock::now();
    for (int i = 0; i < megabytes; ++i) {
        for (int at = 0; at < noise.size(); at += PIECE) {
            const QByteArray piece = noise.mid(at, PIECE);
            handed.addData(piece);
            const auto call = Clock::now();
            writer.record(CaptureRecord::received(capture_time_ns(), piece));
            costs.push_back(ms_since(call));
        }
        if (i % 4 == 3)
            expect(writer.flush(std::chrono::seconds(60)), "not written");
        if (i == std::min(megabytes / 10, 20))
            early_mb = resident_mb() - double(costs.capacity() * sizeof(double)) / 1e6;
    }
    expect(bool(writer.close()), "something is missing");
    const double late_mb = resident_mb() - double(costs.capacity() * sizeof(double)) / 1e6;
    const double write_s = ms_since(begin) / 1000;
    std::printf("speed: %d MB recorded in %.1f s (%.0f MB/s); a call took ms: %s\n", megabytes,
                write_s, megabytes / write_s, qPrintable(percentiles(costs)));
    std::printf("  resident %.1f MB after the first tenth, %.1f MB at the end\n", early_mb,
                late_mb);
    begin = Clock::now();
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    CaptureReader reader(file);
    QCryptographicHash read_back(QCryptographicHash::Sha256);
    for (auto found = reader.next(); found != CaptureReader::Found::End; found = reader.next()) {
        expect(found != CaptureReader::Found::Damage, "damage");
        if (found == CaptureReader::Found::Record)
            read_back.addData(reader.record().bytes);
    }
    const double read_s = ms_since(begin) / 1000;
    expect(read_back.result() == handed.result(), "other bytes");
    std::printf("  read back in %.1f s (%.0f MB/s), sha256 %s; resident %.1f MB\n", read_s,
                megabytes / read_s, read_back.result() == handed.result() ? "equal" : "DIFFERS",
                resident_mb());
}

void fill_disks(int runs)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    std::vector<double> delays;
    for (int run = 0; run < runs; ++run) {
        const QTemporaryDir folder("full-XXXXXX");
        std::atomic<bool> reported{false};
        CaptureWriter writer([&](const CaptureReport& report) {
            reported = reported || report.kind == CaptureReport::Kind::Failing;
        });
        writer.open(folder.filePath("session.pcapng"), {});
        writer.add_port({});
        writer.flush(std::chrono::seconds(60));
        const rlimit full = {1000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        const auto begin = Clock::now();
        writer.record(CaptureRecord::received(0, QByteArray(1000, 'x')));
        while (!reported)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        delays.push_back(ms_since(begin));
        setrlimit(RLIMIT_FSIZE, &before);
        expect(bool(writer.close()), "lost, though there was room again");
    }
    std::printf("full: %d full disks reported, ms after what didn't fit: %s\n", runs,
                qPrintable(percentiles(delays)));
    expect(*std::max_element(delays.begin(), delays.end()) < 100, "later than 100 ms");
}

struct Part
{
    const char* name;
    void (*run)(int amount);
    int usual_amount;
};

constexpr Part PARTS[] = {
    {"kill", kill_recorders, 5},
    {"flips", flip_bits, 2000},
    {"speed", record_much, 64},
    {"full", fill_disks, 5},
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    setvbuf(stdout, nullptr, _IOLBF, 0);
    for (const Part& part : PARTS)
        if (argc < 2 || qstrcmp(argv[1], part.name) == 0)
            part.run(argc > 2 ? atoi(argv[2]) : part.usual_amount);
    return faults == 0 ? 0 : 1;
}
