// The texts of the command line: what they mean, and where the wrong ones are wrong.
#include "cli/boundedcnet.h"
#include "cli/cnetaddress.h"
#include "cli/dorvsettings.h"
#include "cli/failure.h"
#include "cli/progress.h"
#include "cli/stack.h"
#include "framers/qframernull.h"

#include <gtest/gtest.h>
#include <memorylink.h>
#include <print.h>

namespace {
// A link as one line, so that a table can say what a text means.
QString meaning(const LinkSpec& link)
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

template <auto PARSE> std::optional<SpecError> error_of(const QString& text)
{
    return PARSE(text).error;
}

std::optional<SpecError> channels_error(const QString& text)
{
    return parse_number_mask(text, 9, 30).error;
}
} // namespace

TEST(CliText, AGoodLinkMeansItsParts)
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
        {"tcp:[fe80::1]:65535", "1 fe80::1 65535"},
        {"udp:gateway.local:1", "2 gateway.local 1"},
        {"rawtcp:127.0.0.1:80", "3 127.0.0.1 80"},
        {"rawudp:255.255.255.255:80", "4 255.255.255.255 80"},
        {"broadcast:5000", "5  5000"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(meaning(parse_link(row.text).value), row.meaning) << row.text;
}

TEST(CliText, GoodFramersBytesAndListsMeanTheirParts)
{
    const FramerSpecs framers =
        parse_framers("none+crc16+rtu:0xFF+chan:0102+cnet:12ab+rwlt+dorv:pmac+dorv:raw+dorv").value;
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

    EXPECT_EQ(parse_hex_bytes(" 01AB:ff 00 ").value, QByteArray("\x01\xAB\xFF\x00", 4));
    EXPECT_EQ(parse_number_mask("9-30", 9, 30).value, 0x3FFFFFu);
    EXPECT_EQ(parse_number_mask("9,11-12,30", 9, 30).value, 0x20000Du);
    EXPECT_EQ(parse_number_mask("1", 0, 2).value, 2u);
}

TEST(CliText, AWrongTextIsPointedAtWhereItIsWrong)
{
    constexpr auto LINK = error_of<parse_link>;
    constexpr auto FRAMERS = error_of<parse_framers>;
    constexpr auto BYTES = error_of<parse_hex_bytes>;
    constexpr auto WORD = error_of<parse_cnet_word>;
    const struct
    {
        std::optional<SpecError> (*error)(const QString& text);
        const char* text;
        const char* carets; // under the text
    } rows[] = {
        {LINK, "", "^"},
        {LINK, "/dev/ttyUSB0", "^~~~~~~~~~~~"},
        {LINK, "seriell:/dev/ttyUSB0", "^~~~~~~"},
        {LINK, "serial", "      ^"},
        {LINK, "serial:", "       ^"},
        {LINK, "serial:/dev/x,fast,8N1", "              ^~~~"},
        {LINK, "serial:/dev/x,0", "              ^"},
        {LINK, "serial:/dev/x,9600,9N1", "                   ^"},
        {LINK, "serial:/dev/x,9600,8X1", "                    ^"},
        {LINK, "serial:/dev/x,9600,8N3", "                     ^"},
        {LINK, "serial:/dev/x,9600,8N1,some", "                       ^~~~"},
        {LINK, "serial:/dev/x,9600,8N1,none,1", "                            ^"},
        {LINK, "tcp:10.0.0.5", "            ^"},
        {LINK, "tcp:10.0.0.5:65536", "             ^~~~~"},
        {LINK, "tcp::4001", "    ^"},
        {LINK, "tcp:fe80::1:4001", "    ^~~~~~~"},
        {LINK, "tcp:[fe80::1", "            ^"},
        {LINK, "tcp:[fe80::1]x:1", "             ^"},
        {LINK, "rawtcp:gateway:4001", "       ^~~~~~~"},
        {LINK, "rawudp:1.2.3.256:4001", "       ^~~~~~~~~"},
        {FRAMERS, "", "^"},
        {FRAMERS, "crc16+crc", "      ^~~"},
        {FRAMERS, "crc16:1", "      ^"},
        {FRAMERS, "rtu", "   ^"},
        {FRAMERS, "rtu:256", "    ^~~"},
        {FRAMERS, "rtu:1+chan:1g", "            ^"},
        {FRAMERS, "chan:", "     ^"},
        {FRAMERS, "chan:0102030405060708090a0b0c0d0e0f1011",
         "     ^~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~"},
        {FRAMERS, "cnet:123456", "     ^~~~~~"},
        {FRAMERS, "dorv:lora", "     ^~~~"},
        {BYTES, "01 2 03", "   ^"},
        {BYTES, "01 2", "   ^"},
        {BYTES, "01 2g", "    ^"},
        {BYTES, "0x01", " ^"},
        {channels_error, "", "^"},
        {channels_error, "8", "^"},
        {channels_error, "9,31", "  ^~"},
        {channels_error, "9-", "  ^"},
        {channels_error, "12-9", "^~~~"},
        {channels_error, "9-10-11", "     ^~"},
        {WORD, "13=00112233", "^~"},
        {WORD, "3=001122", "  ^~~~~~"},
    };
    for (const auto& row : rows) {
        const auto error = row.error(row.text);
        ASSERT_TRUE(error && !error->message.isEmpty()) << row.text;
        EXPECT_EQ(pointed_at(row.text, *error),
                  QStringLiteral("  %1\n  %2").arg(row.text, row.carets));
    }
    EXPECT_TRUE(LINK("tcp:" + QString(64, 'a') + ":1"));
}

TEST(CliText, AFramerThatCannotStandThereIsPointedAt)
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

TEST(CliText, ProgressTellsRateAndRemainingTime)
{
    EXPECT_EQ(transfer_text({131072, 262144, 12000}),
              "[==========          ]  50 %  131072 of 262144 bytes  10.9 KB/s  0:12 left");
    EXPECT_EQ(transfer_text({0, 100, 5000}), "[                    ]   0 %  0 of 100 bytes");
    EXPECT_EQ(count_text({66, 66, 9000}, "pairs"), "100 %  66 of 66 pairs");
    // A file of the largest size at a crawl.
    EXPECT_EQ(
        transfer_text({100000000, 2147483647, 100000000}),
        "[                    ]   4 %  100000000 of 2147483647 bytes  1.0 KB/s  568:44:44 left");
}

TEST(CliText, ValuesOfDorvSettingsGoThereAndBackOrAreRefused)
{
    const struct
    {
        const char* name;
        QStringList words;
        bool good;
    } rows[] = {
        {"freq", {"4294967295"}, true},
        {"freq", {"4294967296"}, false},
        {"freq", {}, false},
        {"freq", {"1", "2"}, false},
        {"pwrid", {"-128"}, true},
        {"bw", {"31.25"}, true},
        {"bw", {"31"}, false},
        {"uartcfg", {"9600", "8", "even", "1"}, true},
        {"uartcfg", {"9600", "8", "", "1"}, false},
        {"devaddr", {"0xab12"}, true},
        {"deveui", {"0102030405060708"}, true},
        {"deveui", {"01020304050607"}, false},
    };
    for (const auto& row : rows) {
        const DorvSetting& setting = *find_dorv_setting(row.name);
        try {
            EXPECT_EQ(dorv_words(setting, parse_dorv_values(setting, row.words)), row.words);
            EXPECT_TRUE(row.good) << row.name << ' ' << row.words.join(' ').toStdString();
        } catch (const Failure& failure) {
            EXPECT_FALSE(row.good) << failure.what.toStdString();
        }
    }
}

TEST(CliStack, GivesUpABusyDeviceForOneSendAndNotForManyGoodOnes)
{
    const QByteArray busy("\xAA\x01\x85\x55");
    MemoryLink link;
    QFramerNull null(&link);
    BoundedCnet cnet(&null);
    for (int i = 0; i < BoundedCnet::ATTEMPTS + 1; ++i) {
        link.reply(busy);
        link.reply(QByteArray("\xAA\x01\x00\x55", 4));
        ASSERT_EQ(cnet.write("x", 1), 1) << i;
    }
    link.device = [&](const QByteArray&) { return busy; };
    EXPECT_EQ(cnet.write("x", 1), CNET_BUSY);
}

TEST(CliStack, WhatCannotStartLeavesNothingOpenAndNobodyWaiting)
{
    Console console(true);
    ExchangeLog log(console, false, {});
    Stack stack({parse_link("tcp:127.0.0.1:1").value, {}, 1000}, log);
    char byte = 0;
    EXPECT_THROW(stack.open(), Failure);
    EXPECT_EQ(stack.top().read(&byte, 1), FRAMER_CLOSED);
    QThread refused;
    EXPECT_THROW(stack.run_worker(
                     refused, [] {}, [](bool) {}),
                 Failure);
}
