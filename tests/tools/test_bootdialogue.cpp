// The information record of a module and the names of its firmware files.

#include "bootdialogue.h"

#include <gtest/gtest.h>
#include <print.h>

TEST(DeviceInfo, StaysInsideTheRecord)
{
    struct Record
    {
        const char* name;
        QByteArray flags;
        QByteArray behind; // the 12 fixed bytes
        std::optional<QString> module_name;
        int hard_info_size;
        QString shown = "";
    };
    const QString text = "hard info (%1 bytes): %2 %3 %4 %5";
    const Record records[] = {
        {"no name", {1, '\0'}, "", std::nullopt, 0},
        {"no name, hard info announced", {1, '\1'}, "", std::nullopt, 0},
        {"name without NUL", {1, '\1'}, "M1", QString("M1"), 0},
        {"name only",
         {1, '\1'},
         QByteArray("M1\0", 3),
         QString("M1"),
         0,
         "hard info (0 bytes): -- -- -- --"},
        {"empty name",
         {1, '\1'},
         QByteArray("\0\xAA\xBB", 3),
         QString(""),
         2,
         "hard info (2 bytes): aa bb -- --"},
        {"hard info",
         {1, '\1'},
         QByteArray("M1\0\1\2\3\4\5", 8),
         QString("M1"),
         5,
         "hard info (5 bytes): 01 02 03 04"},
        {"hard info not announced", {1, '\xFE'}, QByteArray("M1\0\1\2", 5), QString("M1"), 0},
        {"Latin-1", {1, '\0'}, "\xE9", QString(QChar(0xE9)), 0},
    };
    for (const Record& row : records) {
        SCOPED_TRACE(row.name);
        // Held exactly, so that the sanitizer sees a read beyond it.
        const QByteArray bytes = QByteArray("a\1", 2) + row.flags +
                                 QByteArray("\xFF\2\x0C\0\x63\x10\0\4\0", 9) + row.behind;
        const auto* begin = reinterpret_cast<const std::uint8_t*>(bytes.constData());
        const std::vector<std::uint8_t> record(begin, begin + bytes.size());
        const DeviceInfo info = device_info(record.data(), int(record.size()));
        EXPECT_TRUE(info.in_boot);
        EXPECT_EQ(info.rom_page_size, 4096);
        EXPECT_EQ(info.mtu, 1024);
        EXPECT_EQ(info.name, row.module_name);
        EXPECT_EQ(info.hard_info_size, row.hard_info_size);
        const QString shown = info.hard_info != nullptr
                                  ? hard_info_text(text, info.hard_info, info.hard_info_size)
                                  : "";
        EXPECT_EQ(shown, row.shown);
        EXPECT_EQ(soft_info(info), row.module_name.value_or("") + " V255.02.120099 BOOT");
    }
}

TEST(FirmwareName, BeginsWithTheModulesNameAndAnUnderscore)
{
    struct Name
    {
        const char* file;
        const char* module;
        bool fits;
    };
    const Name names[] = {
        {"M1_1.2.bin", "M1", true}, {"M1_", "M1", true},           {"M1.bin", "M1", false},
        {"M1", "M1", false},        {"m1_1.bin", "M1", false},     {"M", "M1", false},
        {"x", "M1_boot", true},     {"x", "M1_Boot", false},       {"_1.bin", "", true},
        {"1.bin", "", false},       {"C:\\M1_1.bin", "M1", false},
    };
    for (const Name& name : names)
        EXPECT_EQ(firmware_fits(name.file, name.module), name.fits) << name.file;
}
