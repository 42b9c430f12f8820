// A port that another program holds by the lock that terminals take beside the tty's own.
#include "plainsettings.h"
#include "pty.h"
#include "serialport/qextserialport.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

TEST(PortLock, ShutsOthersOutAndIsShutOutByThem)
{
    for (const auto mode : {QextSerialPort::EventDriven, QextSerialPort::Polling}) {
        const Pty pty;
        const int other = ::open(pty.device().toLocal8Bit(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
        const termios before = pty.settings();
        QextSerialPort port(pty.device(), plain_settings(), mode);
        EXPECT_FALSE(port.open(QIODevice::ReadWrite));
        EXPECT_EQ(port.errorString(), "another program has locked the port; close it there, or "
                                      "choose another port");
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

} // namespace
