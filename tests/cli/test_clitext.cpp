// The texts of the command line: what they mean, and where the wrong ones are wrong.
#include "cli/cnetaddress.h"
#include "cli/dorvarguments.h"
#include "cli/exchangelog.h"
#include "cli/progressline.h"
#include "cli/typedargument.h"
#include "framers/qframernull.h"
#include "stack/boundedcnet.h"
#include "stack/numbermask.h"
#include "stack/stack.h"

#include <gtest/gtest.h>
#include <memorylink.h>
#include <print.h>

namespace {
// A link as one line, so that a table can say what a text means.
QString meaning(const LinkDescription& link)
{
    if (link.kind != LinkKind::Serial)
        return QStringLiteral("%1 %2 %3").arg(int(link.kind)).arg(link.host).arg(link.remote_port);
    const PortSettings& s = link.settings;
    return link.port + QString::asprintf(" %d %d-%d-%d-%d", s.BaudRate, s.DataBits, s.Parity,
                                         s.StopBits, s.FlowControl);
}

std::uint32_t channels(const Piece& text)
{
    return parse_number_mask(text, 9, 30);
}

// "LINK FRAMERS"
void fit(const Piece& text)
{
    const QVector<Piece> parts = text.split(' ');
    check_fit(parse_link(parts[0]), parse_framers(parts[1]));
}

using Place = std::pair<int, int>; // column and length

template <auto PARSE> Place mistake(const QString& text)
{
    try {
        PARSE(text);
        return {-1, 0};
    } catch (const TextError& error) {
        EXPECT_FALSE(error.message.isEmpty());
        return {error.column, error.length};
    }
}
} // namespace

TEST(CliText, AGoodTextMeansItsParts)
{
    const std::pair<const char*, const char*> rows[] = {
        {"serial:/dev/ttyUSB0", "/dev/ttyUSB0 115200 8-0-0-0"},
        {"serial:a b,1,5o1.5,rtscts", "a b 1 5-1-1-1"},
        {"SERIAL:COM3,3000000,7E2,XONXOFF", "COM3 3000000 7-2-2-2"},
        {"serial:/dev/x,9600,8M1,none", "/dev/x 9600 8-3-0-0"},
        {"tcp:[fe80::1]:65535", "1 fe80::1 65535"},
        {"udp:gateway.local:1", "2 gateway.local 1"},
        {"rawtcp:127.0.0.1:80", "3 127.0.0.1 80"},
        {"rawudp:255.255.255.255:80", "4 255.255.255.255 80"},
        {"broadcast:5000", "5  5000"},
    };
    for (const auto& [text, parts] : rows)
        EXPECT_EQ(meaning(parse_link(QString(text))), parts) << text;

    QStringList framers;
    const QString text = "none+crc16+rtu:0xFF+chan:0102+cnet:12ab+rwlt+dorv:pmac+dorv:raw+dorv";
    for (const FramerDescription& framer : parse_framers(text))
        framers +=
            QString("%1 %2 ").arg(int(framer.kind)).arg(framer.number) + framer.prefix.toHex();
    EXPECT_EQ(framers.join(','), "0 0 ,1 0 ,2 255 ,3 0 0102,4 4779 ,5 0 ,6 1 ,6 -1 ,6 2 ");

    EXPECT_EQ(parse_hex_bytes(QString(" 01AB:ff 00 ")), QByteArray("\x01\xAB\xFF\x00", 4));
    EXPECT_EQ(channels(QString("9-30")), 0x3FFFFFu);
    EXPECT_EQ(channels(QString("9,11-12,30")), 0x20000Du);
}

TEST(CliText, AWrongTextIsPointedAtWhereItIsWrong)
{
    constexpr auto LINK = mistake<parse_link>;
    constexpr auto FRAMERS = mistake<parse_framers>;
    constexpr auto BYTES = mistake<parse_hex_bytes>;
    constexpr auto CHANNELS = mistake<channels>;
    constexpr auto WORD = mistake<parse_cnet_word>;
    constexpr auto FIT = mistake<fit>;
    // Where it is wrong, -1 for nowhere.
    const std::tuple<Place (*)(const QString&), const char*, int, int> rows[] = {
        // clang-format off
        {LINK, "", 0, 1}, {LINK, "/dev/ttyUSB0", 0, 12}, {LINK, "serial", 6, 1},
        {LINK, "serial:", 7, 1}, {LINK, "serial:/dev/x,0", 14, 1},
        {LINK, "serial:/dev/x,9600,9N1", 19, 1}, {LINK, "serial:/dev/x,9600,8X1", 20, 1},
        {LINK, "serial:/dev/x,9600,8N3", 21, 1}, {LINK, "serial:/dev/x,9600,8N1,some", 23, 4},
        {LINK, "serial:/dev/x,9600,8N1,none,1", 28, 1}, {LINK, "tcp:10.0.0.5", 12, 1},
        {LINK, "tcp:10.0.0.5:65536", 13, 5}, {LINK, "tcp::4001", 4, 1},
        {LINK, "tcp:fe80::1:4001", 4, 7}, {LINK, "tcp:[fe80::1", 12, 1},
        {LINK, "tcp:[fe80::1]x:1", 13, 1}, {LINK, "rawtcp:gateway:4001", 7, 7},
        {LINK, "rawudp:1.2.3.256:4001", 7, 9},
        {FRAMERS, "crc16+crc", 6, 3}, {FRAMERS, "crc16:1", 6, 1}, {FRAMERS, "rtu", 3, 1},
        {FRAMERS, "rtu:256", 4, 3}, {FRAMERS, "rtu:1+chan:1g", 12, 1}, {FRAMERS, "chan:", 5, 1},
        {FRAMERS, "chan:0102030405060708090a0b0c0d0e0f1011", 5, 34}, {FRAMERS, "dorv:lora", 5, 4},
        {BYTES, "01 2 03", 3, 1}, {BYTES, "01 2", 3, 1},
        {CHANNELS, "8", 0, 1}, {CHANNELS, "9,31", 2, 2}, {CHANNELS, "9-", 2, 1},
        {CHANNELS, "12-9", 0, 4}, {CHANNELS, "9-10-11", 5, 2},
        {WORD, "13=00112233", 0, 2}, {WORD, "3=001122", 2, 6},
        {FIT, "serial:x dorv+crc16", -1, 0}, {FIT, "rawtcp:1.2.3.4:5 none+dorv", -1, 0},
        {FIT, "tcp:1.2.3.4:5 crc16", -1, 0}, {FIT, "serial:x crc16+dorv", 15, 4},
        {FIT, "tcp:1.2.3.4:5 none+dorv", 19, 4},
        // clang-format on
    };
    for (const auto& [place, text, column, length] : rows)
        EXPECT_EQ(place(text), Place(column, length)) << text;
    EXPECT_EQ(LINK("tcp:" + QString(64, 'a') + ":1"), Place(4, 64));
}

TEST(CliText, ProgressShowsRateAndRemainingTime)
{
    EXPECT_EQ(transfer_text({131072, 262144, 12000}),
              "[==========          ]  50 %  131072 of 262144 bytes  10.9 KB/s  0:12 left");
    EXPECT_EQ(count_text({66, 66, 9000}, "pairs"), "100 %  66 of 66 pairs");
    // A file of the largest size at a crawl.
    EXPECT_EQ(
        transfer_text({100000000, 2147483647, 100000000}),
        "[                    ]   4 %  100000000 of 2147483647 bytes  1.0 KB/s  568:44:44 left");
}

TEST(CliText, ValuesOfDorvSettingsGoThereAndBackOrAreRefused)
{
    const QStringList good = {"freq 4294967295",         "pwrid -128",     "bw 31.25",
                              "deveui 0102030405060708", "devaddr 0xab12", "uartcfg 9600 8 even 1"};
    const QStringList bad = {"freq 4294967296", "freq 1 2", "bw 31",
                             "uartcfg 9600 8  1", // an empty word
                             "deveui 01020304050607"};
    for (const QString& text : good + bad) {
        const DorvSetting& setting = *find_dorv_setting(text.section(' ', 0, 0));
        const QStringList words = text.section(' ', 1).split(' ');
        try {
            EXPECT_EQ(dorv_words(setting, parse_dorv_values(setting, words)), words);
            EXPECT_TRUE(good.contains(text)) << text.toStdString();
        } catch (const Failure& failure) {
            EXPECT_TRUE(bad.contains(text)) << failure.what.toStdString();
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
    Stack stack({parse_link(QString("tcp:127.0.0.1:1")), {}, 1000}, log);
    char byte = 0;
    EXPECT_THROW(stack.open(), LinkProblem);
    EXPECT_EQ(stack.top().read(&byte, 1), FRAMER_CLOSED);
    QThread refused;
    EXPECT_THROW(stack.run_worker(
                     refused, [] {}, [] {}),
                 LinkProblem);
}
