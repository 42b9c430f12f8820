// Does a replayed capture keep its times? `bench_replay [SECONDS]`: the talk of a simulated device
// at 115200 bits/s is recorded by the monitor, replayed, and recorded again; then the times of each
// recorded piece's last byte are compared. The two recordings begin at different moments, so the
// median difference is taken off. What comes over a pseudo-terminal waits for a thread of the
// kernel too, which competes with other programs even under `chrt -f 5`; over TCP nothing does.
#include "capture/capturereader.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {
struct Piece
{
    std::int64_t time_ns;
    std::int64_t end; // bytes up to here
};

// What the monitor receives from the device in so many seconds.
std::vector<Piece> record(const QStringList& device, const char* link, const QString& path,
                          int seconds)
{
    QProcess simulator;
    simulator.start(TARNWICK_SIM, device);
    simulator.waitForReadyRead();
    const QString port = QString::fromLocal8Bit(simulator.readLine()).trimmed();
    QProcess monitor;
    monitor.setStandardInputFile("/dev/null");
    monitor.setStandardOutputFile("/dev/null");
    monitor.start(TARNWICKCTL, {"monitor", "--link", link + port, "--record", path, "--for",
                                QString::number(seconds)});
    monitor.waitForFinished(-1);
    simulator.terminate();
    simulator.waitForFinished(-1);

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    CaptureReader reader(file);
    std::vector<Piece> pieces;
    std::int64_t end = 0;
    for (auto found = reader.next(); found != CaptureReader::Found::End; found = reader.next())
        if (found == CaptureReader::Found::Record &&
            reader.record().event == CaptureEvent::DataReceived) {
            end += reader.record().bytes.size();
            pieces.push_back({reader.record().time_ns, end});
        }
    return pieces;
}

// How far each piece of the first recording is off in the second, in ms, sorted.
std::vector<double> deviations(const std::vector<Piece>& first, const std::vector<Piece>& second)
{
    std::vector<double> differences;
    std::size_t at = 0;
    for (const Piece& piece : first) {
        while (at < second.size() && second[at].end < piece.end)
            ++at;
        if (at == second.size())
            return {}; // something is missing
        differences.push_back(double(second[at].time_ns - piece.time_ns) / 1e6);
    }
    std::vector<double> sorted = differences;
    std::sort(sorted.begin(), sorted.end());
    for (double& difference : differences)
        difference = std::abs(difference - sorted[sorted.size() / 2]);
    std::sort(differences.begin(), differences.end());
    return differences;
}

bool compare(const char* name, const std::vector<Piece>& first, const std::vector<Piece>& second)
{
    const std::vector<double> off = deviations(first, second);
    if (off.empty()) {
        std::printf("  %s: FAULT: bytes are missing in the replay\n", name);
        return false;
    }
    const auto at = [&](double part) { return off[std::size_t(part * double(off.size() - 1))]; };
    const auto within = std::upper_bound(off.begin(), off.end(), 1.0) - off.begin();
    std::printf("  %s: within 1 ms: %.2f %%; ms off: median %.3f, 99 %% %.3f, most %.3f\n", name,
                100.0 * double(within) / double(off.size()), at(0.5), at(0.99), at(1));
    return at(0.99) <= 1;
}

bool measure(const char* name, const QStringList& talk, int seconds)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("first.pcapng");
    const auto first = record(QStringList({"talk", "--baud", "115200", "--binary"}) + talk,
                              "serial:", path, seconds);
    if (first.empty()) {
        std::printf("%s: FAULT: nothing was recorded\n", name);
        return false;
    }
    std::printf("%s: %zu pieces, %lld bytes\n", name, first.size(),
                static_cast<long long>(first.back().end));
    const bool port =
        compare("a virtual port", first,
                record({"replay", path}, "serial:", folder.filePath("port.pcapng"), seconds + 2));
    const bool tcp = compare("TCP", first,
                             record({"replay", path, "--listen", "0"},
                                    "tcp:", folder.filePath("tcp.pcapng"), seconds + 2));
    return port && tcp;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int seconds = argc > 1 ? atoi(argv[1]) : 5;
    const bool frames =
        measure("frames of 40 bytes, 100 a second", {"--size", "40", "--rate", "4000"}, seconds);
    const bool stream = measure("stream without a pause", {"--rate", "0"}, seconds);
    return frames && stream ? 0 : 1;
}
