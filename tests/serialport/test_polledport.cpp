#include "portsettings.h"
#include "pty.h"
#include "wait.h"

#include <QElapsedTimer>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr auto MODE = QIODevice::ReadWrite | QIODevice::Unbuffered;

struct PolledPair
{
    explicit PolledPair(long timeout_ms)
        : port(pty.device(), plain_settings(timeout_ms), QextSerialPort::Polling)
    {
        EXPECT_TRUE(port.open(MODE)) << qPrintable(port.errorString());
    }

    Pty pty;
    QextSerialPort port;
};

} // namespace

TEST(PolledPort, ReadsADribblingReplyWhole)
{
    PolledPair pair(20000);
    const QByteArray reply = mixed_bytes(40);
    std::thread device([&] {
        for (const char byte : reply) {
            EXPECT_EQ(::write(pair.pty.master_fd(), &byte, 1), 1);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    EXPECT_EQ(pair.port.read(reply.size()), reply);
    device.join();
}

TEST(PolledPort, EndsAReadByItsTimeout)
{
    PolledPair pair(200);
    ASSERT_EQ(::write(pair.pty.master_fd(), "abc", 3), 3);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(pair.port.read(10), "abc");
    EXPECT_GE(clock.elapsed(), 160);
    char byte = 0;
    EXPECT_FALSE(pair.port.getChar(&byte));
    EXPECT_EQ(pair.port.lastError(), 0u);
}

TEST(PolledPort, MovesMoreThanItsBufferFromAnotherThread)
{
    PolledPair pair(20000);
    const QByteArray data = mixed_bytes(1000000);
    QByteArray there;
    std::thread driver([&] {
        while (there.size() < data.size())
            there += pair.port.read(qMin(70000, data.size() - there.size()));
        EXPECT_EQ(pair.port.write(data), data.size());
    });
    EXPECT_TRUE(pair.pty.write(data));
    EXPECT_EQ(pair.pty.read(data.size()), data);
    driver.join();
    EXPECT_EQ(there, data);
}

TEST(PolledPort, ReadsLines)
{
    PolledPair pair(200);
    ASSERT_EQ(::write(pair.pty.master_fd(), "one\r\ntw", 7), 7);
    EXPECT_TRUE(wait_until([&] { return pair.port.canReadLine(); }));
    EXPECT_EQ(pair.port.readLine(), "one\r\n");
    EXPECT_FALSE(pair.port.canReadLine());
    EXPECT_EQ(pair.port.readLine(), "tw");
}

TEST(PolledPort, WithdrawsWhatAPeerDoesNotTake)
{
    PolledPair pair(100);
    const QByteArray data = mixed_bytes(500000);
    const qint64 written = pair.port.write(data);
    EXPECT_LT(written, data.size());
    EXPECT_GE(written, 0);
    EXPECT_NE(pair.port.lastError(), 0u);
    EXPECT_EQ(pair.port.bytesToWrite(), 0);
    pair.pty.read(int(data.size()), 200);
    ASSERT_EQ(pair.port.write("next", 4), 4);
    EXPECT_EQ(pair.pty.read(4), "next");
}

TEST(PolledPort, TellsOfADeviceThatHasGone)
{
    PolledPair pair(20000);
    std::thread device([&] {
        EXPECT_EQ(::write(pair.pty.master_fd(), "ab", 2), 2);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        pair.pty.hang_up();
    });
    EXPECT_EQ(pair.port.read(10), "ab");
    device.join();
    char buffer[4];
    EXPECT_EQ(pair.port.read(buffer, 4), -1);
    EXPECT_EQ(pair.port.write("x", 1), -1);
    EXPECT_NE(pair.port.lastError(), 0u);
    EXPECT_TRUE(pair.port.isOpen());
}
