// What every byte link shares.
#include "links/qlinkserial.h"
#include "links/qlinktcpip.h"
#include "links/qlinkwinsock.h"
#include "loglines.h"
#include "memorylink.h"
#include "plainsettings.h"
#include "print.h"

#include <gtest/gtest.h>

namespace {

TEST(QLink, ReadsALineOrWhatFits)
{
    const struct
    {
        QByteArray waiting;
        int size;
        QByteArray line;
        QByteArray unread;
    } rows[] = {
        {"abc\n", -1, "", "abc\n"},
        {"abc\n", 0, "", "abc\n"},
        {"abc\n", 1, "", "abc\n"},
        {"1234567", 5, "1234", "567"},
        {"ab\ncd\n", 8, "ab\n", "cd\n"},
        {"abc\nd", 5, "abc\n", "d"},
        {"abc", 8, "abc", ""},
        {"\xFF\x8A\n", 8, "\xFF\x8A\n", ""},
        {"", 8, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.waiting.toStdString() + " " + std::to_string(row.size));
        MemoryLink link;
        link.arrive(row.waiting);
        QByteArray buffer(16, '#');
        EXPECT_EQ(link.readline(buffer.data(), row.size), row.line.size());
        const QByteArray stored = row.size > 0 ? row.line + '\0' : QByteArray();
        EXPECT_EQ(buffer, stored.leftJustified(16, '#'));
        EXPECT_EQ(link.unread(), row.unread);
    }
}

TEST(QLink, AnswersByItsTableWhileClosed)
{
    QLinkSerial serial("/dev/null/none", plain_settings(), true);
    QLinkTcpip tcpip(nullptr);
    QLinkWinsock winsock(nullptr);
    const QString write_closed = "tcpip: write failed, connection not opened";
    const QString readline_closed = "tcpip: readline failed, connection not opened";
    const struct
    {
        QObject* object;
        int readline, close;
        QStringList log;
    } rows[] = {{&serial, -6, -6, {}},
                {&tcpip, -6, 0, {write_closed, readline_closed}},
                {&winsock, 0, 0, {write_closed}}};
    for (const auto& row : rows) {
        auto* const link = static_cast<QLink*>(row.object->qt_metacast("QLink"));
        ASSERT_NE(link, nullptr);
        QSignalSpy log(row.object, SIGNAL(log(QString)));
        char buffer[4];
        link->flush();
        EXPECT_FALSE(link->is_open());
        EXPECT_FALSE(link->can_read_line());
        EXPECT_EQ(link->bytes_available(), -6);
        EXPECT_EQ(link->getchar(), -6);
        EXPECT_EQ(link->putchar('x'), -6);
        EXPECT_EQ(link->read(buffer, 4), -6);
        EXPECT_EQ(link->write("x", 1), -6);
        EXPECT_EQ(link->readline(buffer, 4), row.readline);
        EXPECT_EQ(link->close(), row.close);
        EXPECT_EQ(lines(log), row.log);
    }
    QSignalSpy log(&serial, &QLinkSerial::log);
    EXPECT_EQ(serial.open(), -11);
    EXPECT_EQ(serial.close(), -6);
    EXPECT_EQ(lines(log), QStringList("Open /dev/null/none failed"));
}

} // namespace
