// The parts of the byte link that every link shares.
#include "faultylink.h"
#include "memorylink.h"

#include <gtest/gtest.h>

namespace {

struct LineCase
{
    const char* waiting;
    int size;
    const char* line; // null: the buffer stays untouched
    const char* unread;
};

class ReadlineTest : public testing::TestWithParam<LineCase>
{
};

TEST_P(ReadlineTest, StoresALineOrWhatFits)
{
    const LineCase& c = GetParam();
    MemoryLink link;
    link.arrive(c.waiting);
    char buffer[16];
    memset(buffer, '#', sizeof buffer);
    const QByteArray line = c.line ? QByteArray(c.line) + '\0' : QByteArray();

    EXPECT_EQ(link.readline(buffer, c.size), qMax(0, line.size() - 1));
    EXPECT_EQ(QByteArray(buffer, line.size()), line);
    EXPECT_EQ(buffer[line.size()], '#') << "written behind the terminating NUL";
    EXPECT_EQ(link.unread(), QByteArray(c.unread));
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ReadlineTest,
    testing::Values(LineCase{"abc\n", -1, nullptr, "abc\n"}, LineCase{"abc\n", 0, nullptr, "abc\n"},
                    LineCase{"abc\n", 1, "", "abc\n"}, LineCase{"1234567", 5, "1234", "567"},
                    LineCase{"ab\ncd\n", 8, "ab\n", "cd\n"}, LineCase{"abc\nd", 5, "abc\n", "d"},
                    LineCase{"\n", 8, "\n", ""}, LineCase{"abc", 8, "abc", ""},
                    LineCase{"", 8, "", ""}));

TEST(ReadlineTest, TakesHighBytesAndEndsOnAnError)
{
    MemoryLink memory;
    memory.arrive("\xFF\x8A\x0A");
    char buffer[8];
    EXPECT_EQ(memory.readline(buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "\xFF\x8A\x0A");

    memory.close();
    EXPECT_EQ(memory.readline(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
}

} // namespace
