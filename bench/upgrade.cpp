// How close a firmware upgrade comes to what the wire allows: a 256 KB image to the simulated
// module over a pseudo-terminal, at three rates; then the same image again, and one that differs in
// three pages. All of it over a serial link, over a socket, and over a bare file descriptor in
// place of the serial link, which shows what the machine itself allows.
//
//   bench_upgrade [bits/s ...]
#include "framers/qframercrc16.h"
#include "framers/qframernull.h"
#include "links/qlinkserial.h"
#include "links/qlinkwinsock.h"
#include "tools/loader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <random>
#include <termios.h>
#include <unistd.h>
#include <vector>

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
constexpr int PATIENCE_MS = 500; // of a link that waits for bytes

// Counts what passes through the link below, and takes the time from one request to the next.
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
        const double now = double(clock.nsecsElapsed()) / 1e9;
        if (last_request)
            periods[last_request].push_back(now - last_time);
        last_request = nbytes > 0 ? buffer[0] : char(0);
        last_time = now;
        bytes += nbytes;
        packets += last_request == 'e';
        checks += last_request == 'd';
        return lower.write(buffer, nbytes);
    }

    qint64 bytes = 0;
    int packets = 0;
    int checks = 0;
    std::map<char, std::vector<double>> periods; // of each kind of request, in seconds

    void reset()
    {
        bytes = 0;
        packets = 0;
        checks = 0;
        periods.clear();
        last_request = 0;
        clock.start();
    }

private:
    QLink& lower;
    QElapsedTimer clock;
    char last_request = 0;
    double last_time = 0;
};

// The same port as a plain file descriptor, driven by the caller's thread.
class BareLink : public QLink
{
public:
    explicit BareLink(const QString& path)
        : path(QFile::encodeName(path))
    {
    }
    ~BareLink() { BareLink::close(); }

    int open() override
    {
        fd = ::open(path.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        return fd >= 0 ? 0 : LINK_FAILED;
    }
    bool is_open() override { return fd >= 0; }
    int close() override
    {
        ::close(fd);
        fd = -1;
        return 0;
    }
    void flush() override { ::tcflush(fd, TCIFLUSH); }
    int bytes_available() override { return 0; }
    int getchar() override { return LINK_IO; }
    int putchar(int) override { return LINK_IO; }
    int read(char* buffer, int nbytes) override
    {
        int done = 0;
        for (pollfd ready = {fd, POLLIN, 0}; done < nbytes && ::poll(&ready, 1, PATIENCE_MS) == 1;)
            done += std::max(0, int(::read(fd, buffer + done, size_t(nbytes - done))));
        return done;
    }
    int write(const char* buffer, int nbytes) override
    {
        return int(::write(fd, buffer, size_t(nbytes)));
    }

private:
    QByteArray path;
    int fd = -1;
};

struct Run
{
    bool verified = false;
    double seconds = 0;     // of the walk over the pages
    double undisturbed = 0; // the same if each exchange took as long as the median of its kind
    qint64 walk_bytes = 0;  // both ways, during the walk
    int packets = 0;
    int checks = 0;
};

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + long(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Run upgrade(CountedLink& link, Loader& loader)
{
    Run run;
    QObject context;
    QElapsedTimer clock;
    const auto note = [&](const QString& text) {
        if (text == "ldr: Sending firmware file ...") {
            clock.start();
            link.reset();
        } else if (text == "ldr: Firmware verify ...") {
            run.seconds = double(clock.nsecsElapsed()) / 1e9;
            run.walk_bytes = link.bytes;
            run.packets = link.packets;
            run.checks = link.checks;
            run.undisturbed =
                link.packets * median(link.periods['e']) + link.checks * median(link.periods['d']);
        }
        run.verified |= text == "File sent and verified OK";
    };
    QObject::connect(&loader, &Loader::log, &context, note, Qt::DirectConnection);
    QObject::connect(&loader, &Loader::msgbox, &context, note, Qt::DirectConnection);
    loader.upgrade_start();
    loader.wait();
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

void print(const char* port, const char* what, int baud, const Run& run, int pages_to_send)
{
    const double least = PAGES * CHECK + pages_to_send * PACKETS_A_PAGE * PACKET;
    const double wire_seconds = double(run.walk_bytes) * BITS_PER_BYTE / baud;
    const double payload_seconds = double(run.packets) * MTU * BITS_PER_BYTE / baud;
    std::printf("%8d  %-6s %-12s %8.3f %10lld %9.2f %8.1f %9.1f %9.1f %8d %7d  %s\n", baud, port,
                what, run.seconds, static_cast<long long>(run.walk_bytes),
                100 * (double(run.walk_bytes) / least - 1), 100 * wire_seconds / run.seconds,
                100 * payload_seconds / run.seconds, 100 * wire_seconds / run.undisturbed,
                run.packets, run.checks, run.verified ? "yes" : "NO");
}

// The three upgrades of one module; false when one of them sent what it should not have.
bool upgrade_thrice(QLink& port, const QString& file, int baud, const char* port_kind)
{
    CountedLink link(port);
    QFramerNull null(&link);
    QFramerCrc16 crc(&null);
    Loader loader(&crc);
    loader.filename_set(file);
    loader.pack_len_set(MTU);
    loader.send_interval_set(0);
    loader.reset_wait_ms_set(200);
    if (link.open() != 0)
        return false;
    QByteArray image = random_image();
    write_file(file, image);
    const Run first = upgrade(link, loader);
    print(port_kind, "all new", baud, first, PAGES);
    QThread::msleep(200); // the module starts its new firmware
    const Run same = upgrade(link, loader);
    print(port_kind, "same again", baud, same, 0);
    for (int page : {0, 31, PAGES - 1})
        image[page * PAGE + 100] = char(~image[page * PAGE + 100]);
    write_file(file, image);
    QThread::msleep(200);
    const Run three = upgrade(link, loader);
    print(port_kind, "three pages", baud, three, 3);
    link.close();
    return first.verified && same.verified && three.verified && same.packets == 0 &&
           three.packets == 3 * PACKETS_A_PAGE;
}

// A module of its own for each measurement.
class SimulatedModule
{
public:
    SimulatedModule(int baud, const QStringList& port_options)
    {
        process.start(TARNWICK_SIM,
                      QStringList{"boot", "--boot", "--baud", QString::number(baud), "--page",
                                  QString::number(PAGE), "--mtu", QString::number(MTU)} +
                          port_options);
        process.waitForReadyRead();
        address = QString::fromLocal8Bit(process.readLine()).trimmed();
    }
    ~SimulatedModule()
    {
        process.terminate();
        process.waitForFinished();
    }

    QString address;

private:
    QProcess process;
};

bool measure(int baud)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("M1_bench.bin");
    const QStringList tty = {"--name",
                             QStringLiteral("bench-%1").arg(QCoreApplication::applicationPid())};
    bool good = true;
    {
        const SimulatedModule module(baud, tty);
        QLinkSerial link(module.address,
                         {BaudRateType(baud), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, PATIENCE_MS},
                         false);
        good = upgrade_thrice(link, file, baud, "serial") && good;
    }
    {
        const SimulatedModule module(baud, {"--listen", "0"});
        tcpip_cfg cfg = tcpip_defaults();
        std::strcpy(cfg.addr, "127.0.0.1");
        cfg.remote_port = module.address.section(':', 1).toInt();
        cfg.timeout = PATIENCE_MS;
        QLinkWinsock link(&cfg);
        good = upgrade_thrice(link, file, baud, "socket") && good;
    }
    const SimulatedModule module(baud, tty);
    BareLink link(module.address);
    return upgrade_thrice(link, file, baud, "bare") && good;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QStringList rates = QCoreApplication::arguments().mid(1);
    if (rates.isEmpty())
        rates = QStringList{"115200", "921600", "3000000"};
    std::printf("  bits/s  link   file          seconds      bytes  over min    wire %% payload %% "
                " packets  "
                "checks  verified\n");
    bool good = true;
    for (const QString& rate : rates)
        good = measure(rate.toInt()) && good;
    return good ? 0 : 1;
}
