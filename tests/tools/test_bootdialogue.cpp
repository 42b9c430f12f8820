// The information record of a module and the names of its firmware files.
#include "tools/bootdialogue.h"

#include <gtest/gtest.h>
#include <print.h>

TEST(DeviceInfo, StaysInsideTheRecord)
{
    const QString text = "hard info (%1 bytes): %2 %3 %4 %5";
    const struct
    {
        char flags;
        QByteArray rest; // after the 12 fixed bytes
        std::optional<QString> module_name;
        QString hard_info;
    } rows[] = {
        {'\0', "", std::nullopt, "none"},
        {'\1', "", std::nullopt, "none"}, // announced, and not there
        {'\1', "M1", QString("M1"), "none"},
        {'\1', QByteArray("M1\0", 3), QString("M1"), "hard info (0 bytes): -- -- -- --"},
        {'\1', QByteArray("\0\xAA\xBB", 3), QString(""), "hard info (2 bytes): aa bb -- --"},
        {'\1', QByteArray("M\0\1\2\3\4\5", 7), QString("M"), "hard info (5 bytes): 01 02 03 04"},
        {'\xFE', QByteArray("M1\0\1\2", 5), QString("M1"), "none"}, // not announced
        {'\0', "\xE9", QString(QChar(0xE9)), "none"},               // Latin-1
    };
    for (const auto& row : rows) {
        const QByteArray bytes = QByteArray("a\1", 2) + row.flags +
                                 QByteArray("\xFF\2\x0C\0\x63\x10\0\4\0", 9) + row.rest;
        const auto* begin = reinterpret_cast<const std::uint8_t*>(bytes.constData());
        // Held exactly, so that the sanitizer sees a read beyond it.
        const std::vector<std::uint8_t> record(begin, begin + bytes.size());
        const DeviceInfo info = device_info(record.data(), int(record.size()));
        EXPECT_EQ(info.rom_page_size, 4096);
        EXPECT_EQ(info.mtu, 1024);
        EXPECT_EQ(info.name, row.module_name);
        const QString shown = hard_info_text(text, info.hard_info, info.hard_info_size);
        EXPECT_EQ(info.hard_info != nullptr ? shown : "none", row.hard_info);
        EXPECT_EQ(soft_info(info), row.module_name.value_or("") + " V255.02.120099 BOOT");
    }
}

TEST(FirmwareName, BeginsWithTheModulesNameAndAnUnderscore)
{
    const struct
    {
        const char* file;
        const char* module;
        bool fits;
    } rows[] = {
        {"M1_1.2.bin", "M1", true}, {"M1_", "M1", true},       {"M1.bin", "M1", false},
        {"M1", "M1", false},        {"m1_1.bin", "M1", false}, {"x", "M1_boot", true},
        {"x", "M1_Boot", false},    {"_1.bin", "", true},      {"1.bin", "", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(firmware_fits(row.file, row.module), row.fits) << row.file;
}
