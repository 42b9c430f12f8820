#include "cnetaddress.h"
#include "dorvsettings.h"
#include "failure.h"
#include "hexbytes.h"
#include "progress.h"

#include <gtest/gtest.h>
#include <print.h>

TEST(CliText, BytesComeFromHexadecimalTextOrItsMistakeIsShown)
{
    EXPECT_EQ(parse_hex_bytes(" 01AB:ff 00 ").value, QByteArray("\x01\xAB\xFF\x00", 4));
    EXPECT_EQ(parse_hex_bytes("").value, QByteArray());
    const struct
    {
        const char* text;
        int column;
    } wrong[] = {{"1", 0}, {"01 2 03", 3}, {"01 2g", 4}, {"0x01", 1}, {"01,02", 2}};
    for (const auto& row : wrong) {
        const auto parsed = parse_hex_bytes(row.text);
        ASSERT_TRUE(parsed.error) << row.text;
        EXPECT_EQ(parsed.error->column, row.column) << row.text;
    }
}

TEST(CliText, ListsOfChannelsBecomeMasks)
{
    EXPECT_EQ(parse_number_mask("9-30", 9, 30).value, 0x3FFFFFu);
    EXPECT_EQ(parse_number_mask("9,11-12,30", 9, 30).value, 0x20000Du);
    EXPECT_EQ(parse_number_mask("1", 0, 2).value, 2u);
    const struct
    {
        const char* text;
        int column;
    } wrong[] = {{"", 0},     {"8", 0},       {"9,31", 2}, {"9-", 2},
                 {"12-9", 0}, {"9-10-11", 5}, {"9,,10", 2}};
    for (const auto& row : wrong) {
        const auto parsed = parse_number_mask(row.text, 9, 30);
        ASSERT_TRUE(parsed.error) << row.text;
        EXPECT_EQ(parsed.error->column, row.column) << row.text;
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

TEST(CliText, ValuesOfDorvSettingsGoThereAndBack)
{
    const struct
    {
        const char* name;
        QStringList words;
        bool good;
    } rows[] = {
        {"freq", {"4294967295"}, true},
        {"freq", {"4294967296"}, false},
        {"freq", {"-1"}, false},
        {"freq", {}, false},
        {"freq", {"1", "2"}, false},
        {"pwrid", {"-128"}, true},
        {"bw", {"31.25"}, true},
        {"bw", {"31"}, false},
        {"uartcfg", {"9600", "8", "even", "1"}, true},
        {"uartcfg", {"9600", "8", "", "1"}, false},
        {"sleep", {"deep", "65535", "level", "0"}, true},
        {"devaddr", {"0xab12"}, true},
        {"deveui", {"0102030405060708"}, true},
        {"deveui", {"01020304050607"}, false},
        {"appkey", {"000102030405060708090A0B0C0D0E0F"}, true},
    };
    for (const auto& row : rows) {
        const DorvSetting* setting = find_dorv_setting(row.name);
        ASSERT_TRUE(setting) << row.name;
        try {
            EXPECT_EQ(dorv_words(*setting, parse_dorv_values(*setting, row.words)), row.words);
            EXPECT_TRUE(row.good) << row.name << ' ' << row.words.join(' ').toStdString();
        } catch (const Failure& failure) {
            EXPECT_FALSE(row.good) << failure.what.toStdString();
        }
    }
}
