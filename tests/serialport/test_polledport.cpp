#include "plainsettings.h"
#include "pty.h"
#include "wait.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <thread>

namespace {

struct PolledPair
{
    explicit PolledPair(long timeout_ms)
        : port(pty.device(), plain_settings(timeout_ms), QextSerialPort::Polling)
    {
        EXPECT_TRUE(port.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    }

    Pty pty;
    QextSerialPort port;
};

TEST(PolledPort, ReadsADribblingReplyWholeOnAnotherThread)
{
    PolledPair pair(20000);
    const QByteArray reply = mixed_bytes(40);
    std::thread driver([&] { EXPECT_EQ(pair.port.read(reply.size()), reply); });
    for (const char byte : reply) {
        EXPECT_TRUE(pair.pty.write(QByteArray(1, byte)));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    driver.join();
}

TEST(PolledPort, EndsAReadByItsTimeout)
{
    PolledPair pair(200);
    qint64 quickest = PATIENCE_MS; // of some attempts, as other programs may delay each of them
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(pair.pty.write("abc"));
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(pair.port.read(10), "abc");
        EXPECT_GE(clock.elapsed(), 160);
        quickest = qMin(quickest, clock.elapsed());
    }
    EXPECT_LE(quickest, 240);
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

TEST(PolledPort, CountsWhatGoesOutToAPeerThatDoesNotRead)
{
    for (const long timeout_ms : {0, 100}) {
        PolledPair pair(timeout_ms);
        const QByteArray data = mixed_bytes(500000);
        const qint64 written = pair.port.write(data);
        EXPECT_LT(written, data.size());
        EXPECT_GT(written, 0);
        EXPECT_NE(pair.port.lastError(), 0u);
        EXPECT_EQ(pair.port.bytesToWrite(), 0);
        EXPECT_EQ(pair.pty.read(int(written)), data.left(int(written)));
        ASSERT_EQ(pair.port.write("next", 4), 4);
        EXPECT_EQ(pair.pty.read(4), "next");
        EXPECT_EQ(pair.port.read(4), "");
        ASSERT_TRUE(pair.pty.write("abc"));
        EXPECT_EQ(pair.port.read(4), "abc");
    }
}

TEST(PolledPort, ReportsADeviceThatHasGoneAndGivesItsLastBytes)
{
    PolledPair pair(20000);
    EXPECT_TRUE(pair.pty.write("ab"));
    EXPECT_TRUE(wait_until([&] { return pair.port.bytesAvailable() == 2; }));
    std::thread driver([&] { EXPECT_EQ(pair.port.read(10), "ab"); });
    pair.pty.hang_up();
    driver.join();
    char buffer[4];
    EXPECT_EQ(pair.port.read(buffer, 4), -1);
    EXPECT_EQ(pair.port.write("x", 1), -1);
    EXPECT_NE(pair.port.lastError(), 0u);
    EXPECT_TRUE(pair.port.isOpen());
}

} // namespace
