// The serial link in a program that has no QCoreApplication.
#include "links/qlinkserial.h"
#include "plainsettings.h"
#include "pty.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace {

TEST(WithoutApplication, ASerialLinkMovesBytesAndEndsInTime)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(100), false);
    char buffer[8] = {};
    ASSERT_EQ(link.open(), 0);
    EXPECT_EQ(link.write("ask", 3), 3);
    EXPECT_EQ(pty.read_now(), "ask");
    ASSERT_TRUE(pty.write("reply"));
    EXPECT_EQ(link.read(buffer, 8), 5);
    EXPECT_STREQ(buffer, "reply");
    const QByteArray flood = mixed_bytes(500000);
    EXPECT_LT(link.write(flood, flood.size()), flood.size());
    pty.hang_up();
    EXPECT_EQ(link.read(buffer, 8), -1);
    EXPECT_EQ(link.close(), 0);
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
