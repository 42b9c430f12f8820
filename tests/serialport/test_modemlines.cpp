// Control lines and breaks: on a pseudo-terminal, which has none, and on one that the system's
// calls are made to show as a device with lines.
#include "plainsettings.h"
#include "pty.h"
#include "serialport/qextserialport.h"
#include "wait.h"

#include <QSerialPort>
#include <algorithm>
#include <cstdarg>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {
struct FakeLines
{
    bool present = false;
    int error = 0; // what each call fails with
    int bits = 0;
    std::vector<unsigned long> requests; // that change something
};
FakeLines fake;

bool is_of_lines(unsigned long request)
{
    static constexpr unsigned long ALL[] = {TIOCMGET, TIOCMBIS, TIOCMBIC,
                                            TIOCSBRK, TIOCCBRK, TIOCGDEV};
    return std::find(std::begin(ALL), std::end(ALL), request) != std::end(ALL);
}

int fake_ioctl(unsigned long request, int* value)
{
    if (fake.error != 0) {
        errno = fake.error;
        return -1;
    }
    if (request == TIOCMGET)
        *value = fake.bits;
    else if (request == TIOCGDEV)
        *value = 188 << 8; // USB
    else
        fake.requests.push_back(request);
    if (request == TIOCMBIS)
        fake.bits |= *value;
    if (request == TIOCMBIC)
        fake.bits &= ~*value;
    return 0;
}
} // namespace

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    if (fake.present && is_of_lines(request))
        return fake_ioctl(request, static_cast<int*>(argument));
    return int(::syscall(SYS_ioctl, fd, request, argument));
}

namespace {
class ModemLines : public testing::TestWithParam<QextSerialPort::QueryMode>
{
protected:
    ~ModemLines() override { fake = {}; }

    void expect_all_fail(const char* lines_reason, const char* break_reason)
    {
        EXPECT_EQ(port.lineStatus(), -1);
        EXPECT_EQ(port.errorString(), lines_reason);
        EXPECT_FALSE(port.setDtr(false));
        EXPECT_FALSE(port.setRts());
        EXPECT_FALSE(port.breakSend(1));
        EXPECT_EQ(port.errorString(), break_reason);
    }

    Pty pty;
    QextSerialPort port{pty.device(), plain_settings(), GetParam()};
};

TEST_P(ModemLines, FailWithAReasonWhereThereAreNone)
{
    const char closed[] = "the port is not open";
    expect_all_fail(closed, closed);
    port.setLinesAtOpen({false, true});
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    EXPECT_EQ(port.lastError(), QSerialPort::UnsupportedOperationError);
    expect_all_fail("the port has no control lines; a pseudo-terminal and some adapters have none",
                    "the port can't send a break; a pseudo-terminal can't");
    fake.present = true;
    fake.error = EIO;
    EXPECT_EQ(port.lineStatus(), -1);
    EXPECT_EQ(port.errorString(), "the device has gone");
}

TEST_P(ModemLines, AreReadAndSetOneByOne)
{
    fake.present = true;
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    EXPECT_TRUE(fake.requests.empty()); // no wish, no change
    static constexpr struct
    {
        int system;
        int status;
    } ROWS[] = {{TIOCM_CTS, 0x01}, {TIOCM_DSR, 0x02}, {TIOCM_CD, 0x04},
                {TIOCM_RI, 0x08},  {TIOCM_RTS, 0x10}, {TIOCM_DTR, 0x20}};
    for (const auto& row : ROWS) {
        fake.bits = row.system;
        EXPECT_EQ(port.lineStatus(), row.status);
    }
    EXPECT_TRUE(port.setRts());
    EXPECT_TRUE(port.setDtr(false));
    EXPECT_EQ(port.lineStatus(), LS_RTS);
}

TEST_P(ModemLines, AreAsWishedFromTheOpenOn)
{
    fake.present = true;
    fake.bits = TIOCM_DTR | TIOCM_RTS;
    port.setLinesAtOpen({false, true});
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    EXPECT_EQ(port.lineStatus(), LS_RTS);
    // Between the two opens of the device too, and the line that is to be on never went off.
    const std::vector<unsigned long> expected = {TIOCMBIC, TIOCMBIS, TIOCMBIC, TIOCMBIS};
    EXPECT_EQ(fake.requests, expected);
}

TEST_P(ModemLines, ABreakEndsByItselfAndWithThePort)
{
    fake.present = true;
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    const std::vector<unsigned long> one = {TIOCSBRK, TIOCCBRK};
    EXPECT_TRUE(port.breakSend(20));
    EXPECT_EQ(fake.requests.size(), GetParam() == QextSerialPort::Polling ? 2u : 1u);
    EXPECT_TRUE(wait_until([&] { return fake.requests == one; }));
    if (GetParam() == QextSerialPort::Polling)
        return;
    EXPECT_TRUE(port.breakSend(1'000'000));
    port.close();
    EXPECT_EQ(fake.requests, (std::vector<unsigned long>{TIOCSBRK, TIOCCBRK, TIOCSBRK, TIOCCBRK}));
}

INSTANTIATE_TEST_SUITE_P(Modes, ModemLines,
                         testing::Values(QextSerialPort::EventDriven, QextSerialPort::Polling));
} // namespace
