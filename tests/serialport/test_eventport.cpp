#include "plainsettings.h"
#include "pty.h"
#include "serialport/portdrain.h"
#include "serialport/tty.h"
#include "wait.h"

#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <ctime>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

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
    const struct
    {
        int baud;
        ParityType parity;
        StopBitsType stop;
        FlowType flow;
        tcflag_t cflag; // a pseudo-terminal keeps no PARENB
        tcflag_t iflag;
    } rows[] = {
        {1500000, PAR_NONE, STOP_1, FLOW_OFF, 0, 0},
        {123456, PAR_MARK, STOP_2, FLOW_OFF, CSTOPB | PARODD | CMSPAR, 0},
        {9600, PAR_SPACE, STOP_1_5, FLOW_HARDWARE, CSTOPB | CMSPAR | CRTSCTS, 0},
        {380400, PAR_ODD, STOP_1_5, FLOW_XONXOFF, CSTOPB | PARODD, IXON | IXOFF},
        {110, PAR_EVEN, STOP_1, FLOW_OFF, 0, 0},
    };
    for (const auto& row : rows) {
        Pty pty;
        QextSerialPort port(pty.device(),
                            {BaudRateType(row.baud), DATA_8, row.parity, row.stop, row.flow, 100});
        ASSERT_TRUE(port.open(QIODevice::ReadWrite)) << row.baud << qPrintable(port.errorString());
        const termios tio = pty.settings();
        EXPECT_EQ(tio.c_cflag & (CSTOPB | CRTSCTS | PARODD | CMSPAR), row.cflag) << row.baud;
        EXPECT_EQ(tio.c_iflag & (IXON | IXOFF), row.iflag) << row.baud;
        EXPECT_EQ(tty_rate(pty.master_fd()), row.baud);
    }
}

TEST(EventPort, RefusesWhatCannotBeOpened)
{
    OpenPort open;
    EXPECT_FALSE(open.port.open(QIODevice::ReadWrite));
    EXPECT_TRUE(open.port.isOpen());

    PortSettings no_rate = plain_settings();
    no_rate.BaudRate = BaudRateType(0);
    const std::pair<QString, PortSettings> rows[] = {{"/dev/no-such-port", plain_settings()},
                                                     {"/dev/null", plain_settings()},
                                                     {open.pty.device(), no_rate}};
    for (const auto& [name, settings] : rows) {
        QextSerialPort port(name, settings);
        EXPECT_FALSE(port.open(QIODevice::ReadWrite)) << name.toStdString();
        EXPECT_FALSE(port.errorString().isEmpty());
        EXPECT_NE(port.lastError(), 0u);
    }
    EXPECT_TRUE(rate_is_close(115200, 117000));
    EXPECT_FALSE(rate_is_close(1500000, 9600));
}

TEST(EventPort, BoundsWhatWaitsToBeSentButTakesAnyWriteWhileIdle)
{
    OpenPort open(50);
    const QByteArray block = mixed_bytes(64 * 1024);
    qint64 accepted = 0;
    while (open.port.write(block) == block.size() && accepted < 2 * QextSerialPort::WRITE_LIMIT)
        accepted += block.size();
    EXPECT_LE(accepted, QextSerialPort::WRITE_LIMIT + block.size());
    EXPECT_FALSE(open.port.errorString().isEmpty());
    // A peer that starts to read gets all of it, and then there is room again.
    EXPECT_EQ(open.pty.read(int(accepted)).size(), accepted);
    const QByteArray data = mixed_bytes(int(QextSerialPort::WRITE_LIMIT) + 1000);
    ASSERT_EQ(open.port.write(data), data.size());
    EXPECT_EQ(open.pty.read(data.size()), data);
}

TEST(EventPort, AnnouncesBytesInsideItsOwnSignal)
{
    OpenPort open;
    QTimer patience;
    bool nested = false;
    QObject::connect(&open.port, &QIODevice::readyRead, [&] {
        if (std::exchange(nested, true))
            return;
        open.pty.write("second");
        QEventLoop box; // as one that is open here would run
        QObject::connect(&patience, &QTimer::timeout, &box, &QEventLoop::quit);
        QObject::connect(&open.port, &QIODevice::readyRead, &box, &QEventLoop::quit);
        patience.start(5000);
        box.exec();
        EXPECT_EQ(open.received, "firstsecond");
    });
    open.pty.write("first");
    EXPECT_TRUE(wait_until([&] { return open.received == "firstsecond"; }));
}

TEST(EventPort, ClosesAtOnceAndHoldsTheDeviceUntilAllIsOut)
{
    static const QByteArray data = mixed_bytes(1000000); // more than the system takes
    const struct
    {
        const char* name;
        long timeout_ms;
        void (*run)(Pty&);
    } rows[] = {
        {"the peer reads", 20000, [](Pty& pty) { EXPECT_EQ(pty.read(data.size()), data); }},
        {"the peer talks and doesn't read", 50,
         [](Pty& pty) {
             EXPECT_TRUE(wait_until([&] {
                 const char block[1000] = {};
                 return ::write(pty.master_fd(), block, sizeof block) <= 0 &&
                        !PortDrain::holding(pty.device());
             }));
         }},
        {"the device goes", 20000, [](Pty& pty) { pty.hang_up(); }},
        {"no event loop", 50, [](Pty&) { PortDrain::finish_all(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OpenPort open(row.timeout_ms);
        ASSERT_EQ(open.port.write(data), data.size());
        open.port.close();
        EXPECT_FALSE(open.port.isOpen());
        const QPointer<PortDrain> drain = PortDrain::holding(open.pty.device());
        ASSERT_TRUE(drain);
        row.run(open.pty);
        EXPECT_TRUE(wait_until([&] { return !drain; }));
    }
}

TEST(EventPort, OpensAgainWithSettingsOfItsOwnAfterTheLastBytes)
{
    QTemporaryDir dir;
    const QByteArray data = mixed_bytes(1000000);
    OpenPort open(20000);
    ASSERT_EQ(open.port.write(data), data.size());
    open.port.close();
    QByteArray got;
    std::thread peer([&] {
        while (got.size() < data.size()) {
            // The pseudo-terminal counts what it holds as sent.
            EXPECT_TRUE(got.size() > data.size() / 2 || tty_rate(open.pty.master_fd()) == 115200);
            got += open.pty.read_now();
        }
    });
    PortSettings other = plain_settings();
    other.BaudRate = BAUD9600;
    QextSerialPort next(open.pty.link_into(dir.path(), "other name"), other);
    EXPECT_TRUE(next.open(QIODevice::ReadWrite)) << qPrintable(next.errorString());
    peer.join();
    EXPECT_EQ(got, data);
    EXPECT_EQ(tty_rate(open.pty.master_fd()), 9600);
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
    const std::clock_t cpu_then = std::clock();
    QTest::qWait(500);
    EXPECT_LT(std::clock() - cpu_then, CLOCKS_PER_SEC / 20);
    EXPECT_EQ(ready.count(), signals_then);
}

TEST(EventPort, MayBeDeletedInsideItsOwnSignals)
{
    for (const int last : {1, 2}) { // at a chunk, and at the news of a device that has gone
        Pty pty;
        const QPointer<QextSerialPort> port = new QextSerialPort(pty.device(), plain_settings());
        ASSERT_TRUE(port->open(QIODevice::ReadWrite));
        int count = 0;
        QObject::connect(port, &QIODevice::readyRead, [&] {
            if (++count == last)
                delete port;
        });
        ASSERT_TRUE(pty.write("x"));
        ASSERT_TRUE(wait_until([&] { return count == 1; }));
        pty.hang_up();
        EXPECT_TRUE(wait_until([&] { return !port; }));
    }
}

TEST(EventPort, MayBeClosedInsideItsOwnSignalAndOpenedAgain)
{
    OpenPort open;
    QObject::connect(&open.port, &QIODevice::readyRead, [&] { open.port.close(); });
    ASSERT_TRUE(open.pty.write("x"));
    EXPECT_TRUE(wait_until([&] { return !open.port.isOpen(); }));
    ASSERT_TRUE(open.port.open(QIODevice::ReadWrite));
    ASSERT_EQ(open.port.write("again", 5), 5);
    EXPECT_EQ(open.pty.read(5), "again");
}

} // namespace
