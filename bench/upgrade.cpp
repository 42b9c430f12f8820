// How close a firmware upgrade comes to what the wire allows: a 256 KB image to the simulated
// module over a pseudo-terminal, at three rates; then the same image again, and one that differs in
// three pages.
//
//   bench_upgrade [bits/s ...]
#include "loader.h"
#include "qframercrc16.h"
#include "qframernull.h"
#include "qlinkserial.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <random>

namespace {
constexpr int FILE_SIZE = 256 * 1024;
constexpr int PAGE = 4096;
constexpr int MTU = 1024;
constexpr int CRC = 2;
constexpr int CHECK = 14 + CRC + 2 + CRC;       // bytes of a page check and its answer
constexpr int PACKET = 5 + MTU + CRC + 2 + CRC; // of a data packet and its answer
constexpr int PACKETS_A_PAGE = PAGE / MTU;
constexpr int PAGES = FILE_SIZE / PAGE;
constexpr double BITS_PER_BYTE = 10;

// Counts what passes through the link below.
class CountedLink : public QLink
{
public:
    explicit CountedLink(QLink& lower)
        : lower(lower)
    {
    }

    int open() override { return lower.open(); }
    bool is_open() override { return lower.is_open(); }
    int close() override { return lower.close(); }
    void flush() override { lower.flush(); }
    int bytes_available() override { return lower.bytes_available(); }
    int getchar() override { return lower.getchar(); }
    int putchar(int c) override { return lower.putchar(c); }
    int read(char* buffer, int nbytes) override
    {
        const int count = lower.read(buffer, nbytes);
        bytes += std::max(0, count);
        return count;
    }
    int write(const char* buffer, int nbytes) override
    {
        bytes += nbytes;
        packets += nbytes > 0 && buffer[0] == 'e';
        checks += nbytes > 0 && buffer[0] == 'd';
        return lower.write(buffer, nbytes);
    }

    qint64 bytes = 0;
    int packets = 0;
    int checks = 0; // the one of the whole file included

private:
    QLink& lower;
};

struct Run
{
    bool verified = false;
    double seconds = 0;    // of the walk over the pages
    qint64 walk_bytes = 0; // both ways, during the walk
    int packets = 0;
    int checks = 0;
};

Run upgrade(CountedLink& link, Loader& loader)
{
    Run run;
    QObject context;
    QElapsedTimer clock;
    link.packets = 0;
    link.checks = 0;
    const auto note = [&](const QString& text) {
        if (text == "ldr: Sending firmware file ...") {
            clock.start();
            link.bytes = 0;
        } else if (text == "ldr: Firmware verify ...") {
            run.seconds = double(clock.nsecsElapsed()) / 1e9;
            run.walk_bytes = link.bytes;
        }
        run.verified |= text == "File sent and verified OK";
    };
    QObject::connect(&loader, &Loader::log, &context, note, Qt::DirectConnection);
    QObject::connect(&loader, &Loader::msgbox, &context, note, Qt::DirectConnection);
    loader.upgrade_start();
    loader.wait();
    run.packets = link.packets;
    run.checks = link.checks;
    return run;
}

void write_file(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s can't be written", qPrintable(path));
}

QByteArray random_image()
{
    std::mt19937_64 random(1);
    QByteArray image(FILE_SIZE, Qt::Uninitialized);
    for (char& byte : image)
        byte = char(random() & 0xFF);
    return image;
}

void print(const char* what, int baud, const Run& run, int pages_to_send)
{
    const double least = PAGES * CHECK + pages_to_send * PACKETS_A_PAGE * PACKET;
    const double wire_seconds = double(run.walk_bytes) * BITS_PER_BYTE / baud;
    const double payload_seconds = double(run.packets) * MTU * BITS_PER_BYTE / baud;
    std::printf("%8d  %-12s %8.3f %10lld %9.2f %8.1f %9.1f %8d %7d  %s\n", baud, what, run.seconds,
                static_cast<long long>(run.walk_bytes), 100 * (double(run.walk_bytes) / least - 1),
                100 * wire_seconds / run.seconds, 100 * payload_seconds / run.seconds, run.packets,
                run.checks, run.verified ? "yes" : "NO");
}

bool measure(int baud)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("M1_bench.bin");
    const QString port_name = QStringLiteral("bench-%1").arg(QCoreApplication::applicationPid());
    QProcess simulator;
    simulator.start(TARNWICK_SIM, {"boot", "--boot", "--name", port_name, "--baud",
                                   QString::number(baud), "--page", QString::number(PAGE), "--mtu",
                                   QString::number(MTU), "--image", folder.filePath("rom")});
    simulator.waitForReadyRead();
    const QString port = QString::fromLocal8Bit(simulator.readLine()).trimmed();

    const int patience = 500;
    QLinkSerial serial(port, {BaudRateType(baud), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, patience},
                       false);
    CountedLink link(serial);
    QFramerNull null(&link);
    QFramerCrc16 crc(&null);
    Loader loader(&crc);
    loader.filename_set(file);
    loader.pack_len_set(MTU);
    loader.send_interval_set(0);
    loader.reset_wait_ms_set(200);
    if (link.open() != 0) {
        std::printf("%s can't be opened\n", qPrintable(port));
        return false;
    }

    QByteArray image = random_image();
    write_file(file, image);
    const Run first = upgrade(link, loader);
    print("all new", baud, first, PAGES);
    QThread::msleep(200); // the module starts its new firmware
    const Run same = upgrade(link, loader);
    print("same again", baud, same, 0);
    for (int page : {0, 31, PAGES - 1})
        image[page * PAGE + 100] = char(~image[page * PAGE + 100]);
    write_file(file, image);
    QThread::msleep(200);
    const Run three = upgrade(link, loader);
    print("three pages", baud, three, 3);
    link.close();
    simulator.terminate();
    simulator.waitForFinished();
    return first.verified && same.verified && three.verified && same.packets == 0 &&
           three.packets == 3 * PACKETS_A_PAGE;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QStringList rates = QCoreApplication::arguments().mid(1);
    if (rates.isEmpty())
        rates = QStringList{"115200", "921600", "3000000"};
    std::printf(
        "  bits/s  file          seconds      bytes  over min    wire %% payload %%  packets  "
        "checks  verified\n");
    bool good = true;
    for (const QString& rate : rates)
        good = measure(rate.toInt()) && good;
    return good ? 0 : 1;
}
