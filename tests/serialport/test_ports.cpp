// Ports of both modes on a pseudo-terminal.
#include "plainsettings.h"
#include "serialport/portdrain.h"
#include "serialport/tty.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr auto EVENT_DRIVEN = QextSerialPort::EventDriven;
constexpr auto POLLING = QextSerialPort::Polling;
constexpr int LONG_MS = 60000; // far beyond what is waited for

struct OpenPort
{
    explicit OpenPort(const PortSettings& settings = plain_settings(),
                      QextSerialPort::QueryMode mode = EVENT_DRIVEN)
        : port(pty.device(), settings, mode)
    {
        EXPECT_TRUE(port.open(QIODevice::ReadWrite)) << qPrintable(port.errorString());
    }

    Pty pty;
    QextSerialPort port;
};

TEST(Port, GivesTheDeviceTheSettingsAskedFor)
{
    // What becomes of c_cflag, of which a pseudo-terminal keeps no PARENB, and of c_iflag.
    const std::tuple<PortSettings, tcflag_t, tcflag_t> rows[] = {
        {{BaudRateType(1500000), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 0}, 0, 0},
        {{BaudRateType(123456), DATA_8, PAR_MARK, STOP_2, FLOW_OFF, 0},
         CSTOPB | PARODD | CMSPAR,
         0},
        {{BAUD9600, DATA_8, PAR_SPACE, STOP_1_5, FLOW_HARDWARE, 0}, CSTOPB | CMSPAR | CRTSCTS, 0},
        {{BAUD38400, DATA_8, PAR_ODD, STOP_1_5, FLOW_XONXOFF, 0}, CSTOPB | PARODD, IXON | IXOFF},
        {{BAUD110, DATA_8, PAR_EVEN, STOP_1, FLOW_OFF, 0}, 0, 0},
    };
    for (const auto& [settings, cflag, iflag] : rows) {
        const OpenPort open(settings);
        const termios tio = open.pty.settings();
        EXPECT_EQ(tio.c_cflag & (CSTOPB | CRTSCTS | PARODD | CMSPAR), cflag);
        EXPECT_EQ(tio.c_iflag & (IXON | IXOFF), iflag);
        EXPECT_EQ(tty_rate(open.pty.master_fd()), settings.BaudRate);
    }
}

TEST(Port, RefusesWhatCannotBeOpened)
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

TEST(Port, ShutsOtherProgramsOutAndIsShutOutByTheirLock)
{
    for (const auto mode : {EVENT_DRIVEN, POLLING}) {
        const Pty pty;
        const int other = ::open(pty.device().toLocal8Bit(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
        const termios before = pty.settings();
        QextSerialPort port(pty.device(), plain_settings(), mode);
        EXPECT_FALSE(port.open(QIODevice::ReadWrite));
        EXPECT_TRUE(port.errorString().startsWith("another program has locked the port"));
        EXPECT_NE(port.lastError(), 0u);
        EXPECT_EQ(pty.settings().c_ospeed, before.c_ospeed);

        ASSERT_EQ(::flock(other, LOCK_UN), 0);
        EXPECT_TRUE(port.open(QIODevice::ReadWrite));
        EXPECT_NE(::flock(other, LOCK_EX | LOCK_NB), 0);
        port.close();
        EXPECT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
        ::close(other);
    }
}

TEST(Port, GivesTheLastBytesOfADeviceThatHasGoneAndGoesQuiet)
{
    for (const auto mode : {EVENT_DRIVEN, POLLING}) {
        OpenPort open(plain_settings(LONG_MS), mode);
        QextSerialPort& port = open.port;
        ASSERT_TRUE(open.pty.write("ab"));
        ASSERT_TRUE(wait_until([&] { return port.bytesAvailable() == 2; }));
        open.pty.hang_up();
        EXPECT_TRUE(mode == POLLING || wait_until([&] { return port.lastError() != 0; }));
        EXPECT_EQ(port.read(10), "ab");
        char byte = 0;
        EXPECT_EQ(port.read(&byte, 1), mode == POLLING ? -1 : 0);
        EXPECT_EQ(port.write("x", 1), -1);
        EXPECT_NE(port.lastError(), 0u);
        EXPECT_FALSE(port.errorString().isEmpty());
        EXPECT_TRUE(port.isOpen());
        EXPECT_TRUE(wait_until([] {
            return !QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
        }));
    }
}

TEST(EventPort, CarriesAllBytesBothWaysAndBoundsWhatWaits)
{
    OpenPort open(plain_settings(50));
    const QByteArray data = mixed_bytes(300000);
    ASSERT_TRUE(open.pty.write(data));
    QByteArray received;
    EXPECT_TRUE(
        wait_until([&] { return (received += open.port.readAll()).size() >= data.size(); }));
    EXPECT_EQ(received, data);

    qint64 accepted = 0;
    while (open.port.write(data) == data.size() && accepted < 2 * QextSerialPort::WRITE_LIMIT)
        accepted += data.size();
    EXPECT_LE(accepted, QextSerialPort::WRITE_LIMIT + data.size());
    EXPECT_FALSE(open.port.errorString().isEmpty());
    // A peer that starts to read gets all of it, and then there is room again, for any one write.
    EXPECT_EQ(open.pty.read(int(accepted)).size(), accepted);
    const QByteArray large = mixed_bytes(int(QextSerialPort::WRITE_LIMIT) + 1000);
    ASSERT_EQ(open.port.write(large), large.size());
    EXPECT_EQ(open.pty.read(large.size()), large);
    EXPECT_EQ(open.port.bytesToWrite(), 0);
}

TEST(EventPort, AnnouncesBytesInsideItsOwnSignal)
{
    OpenPort open;
    QByteArray received;
    bool nested = false;
    QObject::connect(&open.port, &QIODevice::readyRead, [&] {
        received += open.port.readAll();
        if (std::exchange(nested, true))
            return;
        open.pty.write("second");
        // Its loop blocks, as that of a box does.
        EXPECT_TRUE(QSignalSpy(&open.port, &QIODevice::readyRead).wait(PATIENCE_MS));
        EXPECT_EQ(received, "firstsecond");
    });
    open.pty.write("first");
    EXPECT_TRUE(wait_until([&] { return nested; }));
}

TEST(EventPort, ClosesAtOnceAndHoldsTheDeviceUntilAllIsOut)
{
    static const QByteArray data = mixed_bytes(1000000); // more than the system takes
    const std::tuple<const char*, long, void (*)(Pty&)> rows[] = {
        {"the peer reads", LONG_MS, [](Pty& pty) { EXPECT_EQ(pty.read(data.size()), data); }},
        {"the peer talks and doesn't read", 50,
         [](Pty& pty) {
             EXPECT_TRUE(wait_until([&] {
                 const char block[1000] = {};
                 return ::write(pty.master_fd(), block, sizeof block) <= 0 &&
                        !PortDrain::holding(pty.device());
             }));
         }},
        {"the device goes", LONG_MS, [](Pty& pty) { pty.hang_up(); }},
        {"no event loop", 50, [](Pty&) { PortDrain::finish_all(); }},
    };
    for (const auto& [name, timeout_ms, run] : rows) {
        SCOPED_TRACE(name);
        OpenPort open(plain_settings(timeout_ms));
        ASSERT_EQ(open.port.write(data), data.size());
        open.port.close();
        EXPECT_FALSE(open.port.isOpen());
        const QPointer<PortDrain> drain = PortDrain::holding(open.pty.device());
        ASSERT_TRUE(drain);
        run(open.pty);
        EXPECT_TRUE(wait_until([&] { return !drain; }));
    }
}

TEST(EventPort, OpensAgainWithSettingsOfItsOwnAfterTheLastBytes)
{
    QTemporaryDir dir;
    const QByteArray data = mixed_bytes(1000000);
    OpenPort open(plain_settings(LONG_MS));
    ASSERT_EQ(open.port.write(data), data.size());
    open.port.close();
    QByteArray got;
    std::thread peer([&] {
        while (got.size() < data.size()) {
            // The pseudo-terminal counts what it holds as sent.
            EXPECT_TRUE(got.size() > data.size() / 2 || tty_rate(open.pty.master_fd()) == 115200);
            got += open.pty.read_now(4096);
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

TEST(EventPort, MayBeDeletedOrClosedInsideItsOwnSignals)
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
    OpenPort open;
    QObject::connect(&open.port, &QIODevice::readyRead, [&] { open.port.close(); });
    ASSERT_TRUE(open.pty.write("x"));
    EXPECT_TRUE(wait_until([&] { return !open.port.isOpen(); }));
    ASSERT_TRUE(open.port.open(QIODevice::ReadWrite));
    ASSERT_EQ(open.port.write("again", 5), 5);
    EXPECT_EQ(open.pty.read(5), "again");
}

TEST(PolledPort, MovesMoreThanItsBufferFromAnotherThread)
{
    OpenPort open(plain_settings(LONG_MS), POLLING);
    const QByteArray data = mixed_bytes(1000000);
    std::thread driver([&] {
        EXPECT_EQ(open.port.read(data.size()), data); // whole, though it dribbles in
        EXPECT_EQ(open.port.write(data), data.size());
    });
    EXPECT_TRUE(open.pty.write(data));
    EXPECT_EQ(open.pty.read(data.size()), data);
    driver.join();
}

TEST(PolledPort, EndsAReadByItsTimeoutAndAWriteThatNobodyReads)
{
    for (const long timeout_ms : {0, 100}) {
        OpenPort open(plain_settings(timeout_ms), POLLING);
        ASSERT_TRUE(open.pty.write("abc"));
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(open.port.read(4), "abc");
        EXPECT_EQ(open.port.read(4), "");
        EXPECT_GE(clock.elapsed(), 2 * timeout_ms * 9 / 10);
        EXPECT_EQ(open.port.lastError(), 0u);

        const QByteArray data = mixed_bytes(500000);
        const qint64 written = open.port.write(data);
        EXPECT_LT(written, data.size());
        EXPECT_GT(written, 0);
        EXPECT_NE(open.port.lastError(), 0u);
        EXPECT_EQ(open.port.bytesToWrite(), 0);
        EXPECT_EQ(open.pty.read(int(written)), data.left(int(written)));
        ASSERT_EQ(open.port.write("next", 4), 4);
        EXPECT_EQ(open.pty.read(4), "next");
    }
}

} // namespace
