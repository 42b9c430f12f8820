// What works in a program without a QCoreApplication: the serial link, and lines of any link.
#include "links/qlinkserial.h"
#include "loglines.h"
#include "memorylink.h"
#include "plainsettings.h"
#include "print.h"
#include "pty.h"

#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace {

TEST(WithoutApplication, ASerialLinkEndsItsReadsAndWritesInTimeOnAnyThread)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(100), true);
    QSignalSpy log(&link, &QLinkSerial::log);
    char buffer[8] = {};
    std::thread([&] { EXPECT_EQ(link.open(), 0); }).join();
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(link.read(buffer, 3), 0);
    EXPECT_EQ(link.getchar(), 0);
    EXPECT_EQ(lines(log), QStringList("Serial port already opened"));
    ASSERT_TRUE(pty.write("reply"));
    EXPECT_EQ(link.read(buffer, 8), 5);
    EXPECT_STREQ(buffer, "reply");
    EXPECT_EQ(link.close(), 0);
    EXPECT_EQ(link.open(), 0);
    std::thread([&] {
        const QByteArray flood = mixed_bytes(500000);
        EXPECT_LT(link.write(flood, flood.size()), flood.size());
        EXPECT_EQ(link.close(), 0);
    }).join();
    QLinkSerial none("/dev/null/none", plain_settings(100), true);
    EXPECT_EQ(none.open(), -11);
    EXPECT_EQ(none.close(), -6);
}

TEST(WithoutApplication, ASerialLinkLeavesNothingOfABacklogAfterAFlush)
{
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(20000), false);
    ASSERT_EQ(link.open(), 0);
    for (const bool read_ahead : {false, true}) {
        const QByteArray stale = mixed_bytes(1000);
        while (::write(pty.master_fd(), stale.constData(), size_t(stale.size())) > 0)
            EXPECT_TRUE(!read_ahead || link.bytes_available() > 0);
        link.flush();
        EXPECT_EQ(link.bytes_available(), 0);
        ASSERT_TRUE(pty.write("new"));
        char buffer[4] = {};
        EXPECT_EQ(link.read(buffer, 3), 3);
        EXPECT_STREQ(buffer, "new");
    }
}

TEST(WithoutApplication, ALineIsReadOrWhatFits)
{
    const std::tuple<QByteArray, int, QByteArray, QByteArray> rows[] = {
        {"abc\n", 0, "", "abc\n"},     {"abc\n", 1, "", "abc\n"},
        {"1234567", 5, "1234", "567"}, {"ab\ncd\n", 8, "ab\n", "cd\n"},
        {"abc\nd", 5, "abc\n", "d"},   {"\xFF\x8A", 8, "\xFF\x8A", ""},
    };
    for (const auto& [waiting, size, line, unread] : rows) {
        MemoryLink link;
        link.arrive(waiting);
        QByteArray buffer(16, '#');
        EXPECT_EQ(link.readline(buffer.data(), size), line.size());
        const QByteArray stored = size > 0 ? line + '\0' : QByteArray();
        EXPECT_EQ(buffer, stored.leftJustified(16, '#'));
        EXPECT_EQ(link.unread(), unread);
    }
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
