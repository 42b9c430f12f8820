#include "stackspec.h"

#include <gtest/gtest.h>
#include <print.h>

// A link as one line, so that a table can say what a text means.
static QString meaning(const LinkSpec& link)
{
    if (link.kind != LinkKind::Serial)
        return QStringLiteral("%1 %2 %3").arg(int(link.kind)).arg(link.host).arg(link.remote_port);
    const PortSettings& s = link.settings;
    return QStringLiteral("%1 %2 %3-%4-%5-%6")
        .arg(link.port)
        .arg(int(s.BaudRate))
        .arg(s.DataBits)
        .arg(s.Parity)
        .arg(s.StopBits)
        .arg(s.FlowControl);
}

TEST(StackSpec, AGoodLinkTextMeansItsParts)
{
    const struct
    {
        const char* text;
        const char* meaning;
    } rows[] = {
        {"serial:/dev/ttyUSB0", "/dev/ttyUSB0 115200 8-0-0-0"},
        {"SERIAL:COM3,9600", "COM3 9600 8-0-0-0"},
        {"serial:a b,1,5o1.5,rtscts", "a b 1 5-1-1-1"},
        {"serial:/dev/x,3000000,7E2,XONXOFF", "/dev/x 3000000 7-2-2-2"},
        {"serial:/dev/x,9600,8M1,none", "/dev/x 9600 8-3-0-0"},
        {"tcp:10.0.0.5:4001", "1 10.0.0.5 4001"},
        {"tcp:[fe80::1]:65535", "1 fe80::1 65535"},
        {"udp:gateway.local:1", "2 gateway.local 1"},
        {"rawtcp:127.0.0.1:80", "3 127.0.0.1 80"},
        {"rawudp:255.255.255.255:80", "4 255.255.255.255 80"},
        {"broadcast:5000", "5  5000"},
    };
    for (const auto& row : rows) {
        const auto parsed = parse_link(row.text);
        ASSERT_FALSE(parsed.error) << row.text << ": " << parsed.error->message.toStdString();
        EXPECT_EQ(meaning(parsed.value), row.meaning) << row.text;
    }
}

struct Wrong
{
    const char* text;
    const char* carets; // under the text
};

template <typename Value>
static void expect_pointed_at(const Wrong& row, const Parsed<Value>& parsed)
{
    ASSERT_TRUE(parsed.error) << row.text;
    EXPECT_FALSE(parsed.error->message.isEmpty());
    EXPECT_EQ(pointed_at(row.text, *parsed.error),
              QStringLiteral("  %1\n  %2").arg(row.text, row.carets));
}

TEST(StackSpec, AWrongLinkTextIsPointedAtWhereItIsWrong)
{
    const Wrong rows[] = {
        {"", "^"},
        {"/dev/ttyUSB0", "^~~~~~~~~~~~"},
        {"seriell:/dev/ttyUSB0", "^~~~~~~"},
        {"serial", "      ^"},
        {"serial:", "       ^"},
        {"serial:/dev/x,fast,8N1", "              ^~~~"},
        {"serial:/dev/x,0", "              ^"},
        {"serial:/dev/x,9600,", "                   ^"},
        {"serial:/dev/x,9600,9N1", "                   ^"},
        {"serial:/dev/x,9600,8X1", "                    ^"},
        {"serial:/dev/x,9600,8N3", "                     ^"},
        {"serial:/dev/x,9600,8N1,some", "                       ^~~~"},
        {"serial:/dev/x,9600,8N1,none,1", "                            ^"},
        {"tcp:10.0.0.5", "            ^"},
        {"tcp:10.0.0.5:", "             ^"},
        {"tcp:10.0.0.5:65536", "             ^~~~~"},
        {"tcp::4001", "    ^"},
        {"tcp:fe80::1:4001", "    ^~~~~~~"},
        {"tcp:[fe80::1", "            ^"},
        {"tcp:[fe80::1]x:1", "             ^"},
        {"rawtcp:gateway:4001", "       ^~~~~~~"},
        {"rawudp:1.2.3.256:4001", "       ^~~~~~~~~"},
        {"broadcast:all", "          ^~~"},
    };
    for (const Wrong& row : rows)
        expect_pointed_at(row, parse_link(row.text));
    EXPECT_TRUE(parse_link("tcp:" + QString(64, 'a') + ":1").error);
}

TEST(StackSpec, AGoodFramerTextMeansItsParts)
{
    const auto parsed =
        parse_framers("none+crc16+rtu:0xFF+chan:0102+cnet:12ab+rwlt+dorv:pmac+dorv:raw+dorv");
    ASSERT_FALSE(parsed.error);
    const FramerSpecs& framers = parsed.value;
    ASSERT_EQ(framers.size(), 9);
    EXPECT_EQ(framers[0].kind, FramerKind::None);
    EXPECT_EQ(framers[1].kind, FramerKind::Crc16);
    EXPECT_EQ(framers[2].number, 255);
    EXPECT_EQ(framers[3].prefix, QByteArray("\x01\x02"));
    EXPECT_EQ(framers[4].number, 0x12AB);
    EXPECT_EQ(framers[5].kind, FramerKind::Rwlt);
    EXPECT_EQ(framers[6].number, 1);
    EXPECT_EQ(framers[7].number, DORV_RAW);
    EXPECT_EQ(framers[8].number, 2);
}

TEST(StackSpec, AWrongFramerTextIsPointedAtWhereItIsWrong)
{
    const Wrong rows[] = {
        {"", "^"},
        {"crc16+", "      ^"},
        {"crc16+crc", "      ^~~"},
        {"crc16:1", "      ^"},
        {"rtu", "   ^"},
        {"rtu:256", "    ^~~"},
        {"rtu:1+chan:1g", "            ^"},
        {"chan:123", "       ^"},
        {"chan:", "     ^"},
        {"chan:0102030405060708090a0b0c0d0e0f1011", "     ^~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~"},
        {"cnet:123456", "     ^~~~~~"},
        {"dorv:lora", "     ^~~~"},
    };
    for (const Wrong& row : rows)
        expect_pointed_at(row, parse_framers(row.text));
}

TEST(StackSpec, AFramerThatCannotStandThereIsPointedAt)
{
    const struct
    {
        const char* link;
        const char* framers;
        int column; // -1: they fit
    } rows[] = {
        {"serial:/dev/x", "dorv+crc16", -1}, {"rawtcp:1.2.3.4:5", "none+dorv", -1},
        {"tcp:1.2.3.4:5", "crc16", -1},      {"serial:/dev/x", "crc16+dorv", 6},
        {"tcp:1.2.3.4:5", "none+dorv", 5},
    };
    for (const auto& row : rows) {
        const auto misfit =
            find_misfit(parse_link(row.link).value, parse_framers(row.framers).value);
        EXPECT_EQ(misfit ? misfit->column : -1, row.column) << row.link << ' ' << row.framers;
    }
}
