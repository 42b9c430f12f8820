#include "portsettings.h"
#include "pty.h"
#include "sandbox.h"
#include "tty.h"
#include "wait.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTimer>
#include <ctime>
#include <gtest/gtest.h>

namespace {

struct OpenPort
{
    explicit OpenPort(long timeout_ms = 300)
        : port(pty.device(), plain_settings(timeout_ms))
    {
        EXPECT_TRUE(port.open(QIODevice::ReadWrite)) << qPrintable(port.errorString());
        QObject::connect(&port, &QIODevice::readyRead, [this] { received += port.readAll(); });
    }

    Pty pty;
    QextSerialPort port;
    QByteArray received;
};

double cpu_seconds()
{
    timespec t = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

struct SettingsRow
{
    int baud;
    ParityType parity;
    StopBitsType stop;
    FlowType flow;
    tcflag_t cflag; // among CSTOPB | CRTSCTS | PARODD | CMSPAR; a pseudo-terminal keeps no PARENB
    tcflag_t iflag; // among IXON | IXOFF
};

} // namespace

TEST(EventPort, CarriesAllBytesBothWays)
{
    OpenPort open;
    const QByteArray data = mixed_bytes(300000);
    ASSERT_TRUE(open.pty.write(data));
    EXPECT_TRUE(wait_until([&] { return open.received.size() >= data.size(); }));
    EXPECT_EQ(open.received, data);

    ASSERT_EQ(open.port.write(data), data.size());
    EXPECT_EQ(open.pty.read(data.size()), data);
    EXPECT_EQ(open.port.bytesToWrite(), 0);
}

TEST(EventPort, GivesTheDeviceTheSettingsAskedFor)
{
    const SettingsRow rows[] = {
        {1500000, PAR_NONE, STOP_1, FLOW_OFF, 0, 0},
        {123456, PAR_MARK, STOP_2, FLOW_OFF, CSTOPB | PARODD | CMSPAR, 0},
        {9600, PAR_SPACE, STOP_1_5, FLOW_HARDWARE, CSTOPB | CMSPAR | CRTSCTS, 0},
        {380400, PAR_ODD, STOP_1_5, FLOW_XONXOFF, CSTOPB | PARODD, IXON | IXOFF},
        {110, PAR_EVEN, STOP_1, FLOW_OFF, 0, 0},
    };
    for (const SettingsRow& row : rows) {
        const PortSettings settings = {
            BaudRateType(row.baud), DATA_8, row.parity, row.stop, row.flow, 100};
        Pty pty;
        QextSerialPort port(pty.device(), settings);
        ASSERT_TRUE(port.open(QIODevice::ReadWrite)) << row.baud << qPrintable(port.errorString());
        const termios tio = pty.settings();
        EXPECT_EQ(tio.c_cflag & (CSTOPB | CRTSCTS | PARODD | CMSPAR), row.cflag) << row.baud;
        EXPECT_EQ(tio.c_iflag & (IXON | IXOFF), row.iflag) << row.baud;
        EXPECT_EQ(tty_rate(pty.master_fd()), row.baud);
    }
}

TEST(EventPort, RefusesWhatCannotBeOpened)
{
    Sandbox sandbox;
    QextSerialPort missing("/dev/no-such-port", plain_settings());
    EXPECT_FALSE(missing.open(QIODevice::ReadWrite));
    EXPECT_FALSE(missing.errorString().isEmpty());
    EXPECT_NE(missing.lastError(), 0u);

    QFile plain(sandbox.path("plain"));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    QextSerialPort no_tty(plain.fileName(), plain_settings());
    EXPECT_FALSE(no_tty.open(QIODevice::ReadWrite));

    Pty pty;
    PortSettings no_rate = plain_settings();
    no_rate.BaudRate = BaudRateType(0);
    QextSerialPort stopped(pty.device(), no_rate);
    EXPECT_FALSE(stopped.open(QIODevice::ReadWrite));

    OpenPort open;
    EXPECT_FALSE(open.port.open(QIODevice::ReadWrite));
    EXPECT_TRUE(open.port.isOpen());

    EXPECT_TRUE(rate_is_close(115200, 117000));
    EXPECT_FALSE(rate_is_close(1500000, 9600));
}

TEST(EventPort, BoundsWhatWaitsToBeSent)
{
    OpenPort open(50);
    const QByteArray block = mixed_bytes(64 * 1024);
    qint64 accepted = 0;
    while (open.port.write(block) == block.size() && accepted < 2 * QextSerialPort::WRITE_LIMIT)
        accepted += block.size();
    EXPECT_LE(accepted, QextSerialPort::WRITE_LIMIT + 64 * 1024);
    EXPECT_FALSE(open.port.errorString().isEmpty());
    // A peer that starts to read gets all of it, and then there is room again.
    EXPECT_EQ(open.pty.read(int(accepted)).size(), accepted);
    EXPECT_EQ(open.port.write(block), block.size());
}

TEST(EventPort, TakesAnyWriteWhileIdle)
{
    OpenPort open(50);
    const QByteArray data = mixed_bytes(int(QextSerialPort::WRITE_LIMIT) + 1000);
    ASSERT_EQ(open.port.write(data), data.size());
    EXPECT_LT(open.port.write("x"), 0);
    EXPECT_EQ(open.pty.read(data.size()), data);
}

TEST(EventPort, AnnouncesBytesInsideItsOwnSignal)
{
    OpenPort open;
    QByteArray all;
    bool nested = false;
    QObject::disconnect(&open.port, &QIODevice::readyRead, nullptr, nullptr);
    QObject::connect(&open.port, &QIODevice::readyRead, [&] {
        all += open.port.readAll();
        if (std::exchange(nested, true))
            return;
        open.pty.write("second");
        QEventLoop box; // as one that is open here would run
        QTimer patience;
        QObject::connect(&patience, &QTimer::timeout, &box, &QEventLoop::quit);
        patience.start(5000);
        QObject::connect(&open.port, &QIODevice::readyRead, &box, &QEventLoop::quit);
        box.exec();
        EXPECT_EQ(all, "firstsecond");
    });
    open.pty.write("first");
    EXPECT_TRUE(wait_until([&] { return all == "firstsecond"; }));
}

TEST(EventPort, CloseLetsAcceptedBytesOut)
{
    OpenPort open(20000);
    const QByteArray data = mixed_bytes(3000);
    ASSERT_EQ(open.port.write(data), data.size());
    open.port.close();
    EXPECT_EQ(open.pty.read(data.size()), data);
}

TEST(EventPort, CloseGivesUpOnAPeerThatTakesNothing)
{
    OpenPort open(50);
    ASSERT_GT(open.port.write(mixed_bytes(1000000)), 0);
    QElapsedTimer clock;
    clock.start();
    open.port.close();
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST(EventPort, GoesQuietWhenTheDeviceHasGone)
{
    OpenPort open;
    QSignalSpy ready(&open.port, &QIODevice::readyRead);
    ASSERT_TRUE(open.pty.write("last words"));
    ASSERT_TRUE(wait_until([&] { return !open.received.isEmpty(); }));
    open.pty.hang_up();
    EXPECT_TRUE(wait_until([&] { return open.port.lastError() != 0; }));
    EXPECT_EQ(open.received, "last words");
    EXPECT_TRUE(open.port.isOpen());
    EXPECT_EQ(open.port.write("x", 1), -1);
    EXPECT_FALSE(open.port.errorString().isEmpty());

    const int signals_then = ready.count();
    const double cpu_then = cpu_seconds();
    QTest::qWait(500);
    EXPECT_LT(cpu_seconds() - cpu_then, 0.25);
    EXPECT_EQ(ready.count(), signals_then);
}

TEST(EventPort, MayBeClosedInsideItsOwnSignal)
{
    OpenPort open;
    QObject::connect(&open.port, &QIODevice::readyRead, [&] { open.port.close(); });
    ASSERT_TRUE(open.pty.write("x"));
    EXPECT_TRUE(wait_until([&] { return !open.port.isOpen(); }));
    ASSERT_TRUE(open.port.open(QIODevice::ReadWrite));
    ASSERT_EQ(open.port.write("again", 5), 5);
    EXPECT_EQ(open.pty.read(5), "again");
}
