// What captures promise, measured: `bench_capture [kill|flips|speed|full] [amount]`; without a word
// all of it, in small.
//
//   kill    a recorder at 921600 bit/s is killed at a random moment, so many times
//   flips   single bits of a recording are flipped, so many
//   speed   so many MB are recorded and read back
//   full    a disk is full, so many times: how soon is that reported
#include "capture.h"
#include "capture/capturereader.h"
#include "capture/capturesurvey.h"
#include "capture/capturewriter.h"
#include "systemwatch.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double resident_mb()
{
    QFile file("/proc/self/statm");
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').at(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

QString percentiles(std::vector<double> values)
{
    if (values.empty())
        return "none";
    std::sort(values.begin(), values.end());
    const auto at = [&](double part) {
        return values[std::size_t(part * double(values.size() - 1))];
    };
    return QStringLiteral("median %1, 99 % %2, most %3")
        .arg(at(0.5), 0, 'f', 3)
        .arg(at(0.99), 0, 'f', 3)
        .arg(at(1), 0, 'f', 3);
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
    std::vector<double> delays, busy_delays;
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
        SystemDelays system = {};
        auto watch = std::make_unique<SystemWatch>(folder.path().toStdString(), system);
        const auto begin = Clock::now();
        writer.record(CaptureRecord::received(0, QByteArray(1000, 'x')));
        while (!reported)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        const double delay = ms_since(begin);
        watch.reset();
        (system.busy() ? busy_delays : delays).push_back(delay);
        expect(system.busy() || delay < 100,
               QStringLiteral("run %1: reported after %2 ms").arg(run).arg(delay));
        setrlimit(RLIMIT_FSIZE, &before);
        expect(bool(writer.close()), "lost, though there was room again");
    }
    std::printf("full: ms after what didn't fit until it is reported\n");
    std::printf("  %zu on a system with time: %s\n", delays.size(),
                qPrintable(percentiles(delays)));
    std::printf("  %zu where a thread waited more than %lld ms for a processor or the disk: %s\n",
                busy_delays.size(), static_cast<long long>(SystemDelays::BUSY_NS / 1'000'000),
                qPrintable(percentiles(busy_delays)));
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
