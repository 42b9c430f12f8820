// The information record of a module and the names of its firmware files.
#include "tools/bootdialogue.h"

#include <gtest/gtest.h>
#include <print.h>

TEST(DeviceInfo, StaysInsideTheRecord)
{
    const std::tuple<char, QByteArray, QString, QString> rows[] = {
        {'\0', "", "", "none"},
        {'\1', "", "", "none"}, // announced, and not there
        {'\1', "M1", "M1", "none"},
        {'\1', QByteArray("M1\0", 3), "M1", "0: -- -- -- --"},
        {'\1', QByteArray("\0\xAA\xBB", 3), "", "2: aa bb -- --"},
        {'\1', QByteArray("M\0\1\2\3\4\5", 7), "M", "5: 01 02 03 04"},
        {'\xFE', QByteArray("M1\0\1\2", 5), "M1", "none"}, // not announced
        {'\0', "\xE9", QString(QChar(0xE9)), "none"},      // Latin-1
    };
    for (const auto& [flags, rest, name, hard_info] : rows) {
        const QByteArray bytes =
            QByteArray("a\1", 2) + flags + QByteArray("\xFF\2\x0C\0\x63\x10\0\4\0", 9) + rest;
        // Held exactly, so that the sanitizer sees a read beyond it.
        const std::vector<std::uint8_t> record(bytes.begin(), bytes.end());
        const DeviceInfo info = device_info(record.data(), int(record.size()));
        EXPECT_EQ(info.name.has_value(), !rest.isEmpty());
        EXPECT_EQ(soft_info(info), name + " V255.02.120099 BOOT");
        const QString text = hard_info_text("%1: %2 %3 %4 %5", info.hard_info, info.hard_info_size);
        EXPECT_EQ(info.hard_info ? text : "none", hard_info);
    }
}

TEST(FirmwareName, BeginsWithTheModulesNameAndAnUnderscore)
{
    for (const char* name : {"M1_1.2.bin", "M1_"})
        EXPECT_TRUE(firmware_fits(name, "M1")) << name;
    for (const char* name : {"M1.bin", "M1", "m1_1.bin"})
        EXPECT_FALSE(firmware_fits(name, "M1")) << name;
    EXPECT_TRUE(firmware_fits("_1.bin", ""));
    EXPECT_FALSE(firmware_fits("1.bin", ""));
    EXPECT_TRUE(firmware_fits("x", "M1_boot"));
    EXPECT_FALSE(firmware_fits("x", "M1_Boot"));
}
