// Whole upgrade runs: the bytes, the signals and their order.
#include "bench.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sys/resource.h>

TEST(Loader, UpgradesByteForByteAndSendsOnlyTheDifferingPages)
{
    Bench bench;
    bench.settings.mtu = 2048;
    bench.loader.pack_len_set(4096); // the device's MTU is the lower one
    bench.set_flash(firmware().replace(100, 1, "X").replace(9000, 1, "X"));
    bench.choose("M1_1.2.bin", firmware());
    const QStringList expected = {
        "ldr: Upgrade thread started",
        "started 10000",
        "progress 10000 0",
        "ldr: get device info ...",
        "> 61",
        "ldr: device ROM page size 4096B, MTU 2048B",
        "ldr: module name: M1",
        "ldr: module name matched",
        "soft M1 V1.02.030405 APP",
        "hard info (5 bytes): a1 02 03 04",
        "hard A1 02 03 04 05",
        "> 62",
        "ldr: set device enter boot mode ... [done]",
        "ldr: wait device enter boot ...",
        "ldr: get device info ...",
        "> 61",
        "ldr: device ROM page size 4096B, MTU 2048B",
        "ldr: module name: M1",
        "ldr: module name matched",
        "soft M1 V1.02.030405 BOOT",
        "hard info (5 bytes): a1 02 03 04",
        "hard A1 02 03 04 05",
        "ldr: Sending firmware file ...",
        "progress 10000 0",
        "> 64 00 00 00 00 00 00 10 00 B9 D3 E1 DE 00",
        "ldr: block(offset=0, size=4096) updating ...",
        "ldr: sending 2048 bytes, progress 0/10000 (0%)",
        "> 65 00 00 00 00 00 07 0E 15 1C 23 2A 31 38 .. 2053 bytes",
        "ldr: sending 2048 bytes, progress 2048/10000 (20%)",
        "> 65 00 00 08 00 08 0F 16 1D 24 2B 32 39 40 .. 2053 bytes",
        "progress 10000 4096",
        "> 64 00 00 10 00 00 00 10 00 A4 2A 7A 60 00",
        "ldr: block(offset=4096, size=4096) verify ... [OK]",
        "progress 10000 8192",
        "> 64 00 00 20 00 00 00 07 10 4A B8 48 D4 00",
        "ldr: block(offset=8192, size=1808) updating ...",
        "ldr: sending 1808 bytes, progress 8192/10000 (81%)",
        "> 65 00 00 20 00 20 27 2E 35 3C 43 4A 51 58 .. 1813 bytes",
        "ldr: Firmware verify ...",
        "> 64 00 00 00 00 00 00 27 10 57 5A F1 FE 01",
        "ldr: block(offset=0, size=10000) verify ... [OK]",
        "ldr: device reboot",
        "> 63",
        "box File sent and verified OK",
        "ldr: total took 0 seconds",
        "done",
    };
    EXPECT_EQ(bench.run(), expected);
    EXPECT_EQ(bench.flash(), firmware());
}

TEST(Loader, ReportsTheModuleAndEachPage)
{
    const struct
    {
        const char* fault; // the hexadecimal start of the request that gets no answer
        bool abort;
        const char* states; // the letter of each after its page
    } rows[] = {{"-", false, "0D 0G 0S 1E 2D 2G 2S"},
                {"6500000800", false, "0D 0G 0F"},
                {"6400001000", false, "0D 0G 0S 1F"},
                {"-", true, "0D 0G 0D"}};
    for (const auto& row : rows) {
        Bench bench;
        bench.set_flash(firmware().replace(100, 1, "X").replace(9000, 1, "X"));
        bench.fault = [&](const QByteArray& request) {
            if (row.abort && request.startsWith("e"))
                bench.loader.abort();
            return request.toHex().startsWith(row.fault) ? SILENCE : QByteArray();
        };
        QStringList states;
        LoaderDevice device;
        const auto add = [&](quint32 offset, LoaderPage state) {
            states += QString::number(offset / 4096) + "EDGSF"[int(state)];
        };
        const auto take = [&](const LoaderDevice& found) { device = found; };
        QObject::connect(&bench.loader, &Loader::page_state, &bench.loader, add,
                         Qt::DirectConnection);
        QObject::connect(&bench.loader, &Loader::device_found, &bench.loader, take,
                         Qt::DirectConnection);
        bench.run();
        EXPECT_EQ(states.join(' '), row.states);
        EXPECT_EQ(device.soft_info, "M1 V1.02.030405 BOOT");
        EXPECT_EQ(device.hard_info, "\xA1\x02\x03\x04\x05");
        EXPECT_TRUE(device.in_boot && device.rom_page_size == 4096 && device.mtu == 1024);
    }
}

TEST(Loader, CutsPacketsToTheLowerOfMtuAndPackLen)
{
    const struct
    {
        quint16 mtu;
        uint pack_len;
        const char* sizes; // of the requests that write
    } rows[] = {{1024, 512, "517 517 517 72"},
                {1024, 1027, "1029 584"},
                {0xFFFF, 0xFFFFFFFF, "1608"},
                {700, 0xFFFFFFFF, "705 705 208"}};
    for (const auto& row : rows) {
        Bench bench;
        bench.settings.mtu = row.mtu;
        bench.loader.pack_len_set(row.pack_len);
        bench.choose("M1_1.bin", firmware().left(1603));
        const QStringList packets = bench.run().filter("> 65");
        EXPECT_EQ(QStringList(packets)
                      .replaceInStrings(QRegularExpression(".*\\.\\. | bytes"), "")
                      .join(' '),
                  row.sizes);
        EXPECT_EQ(bench.flash(), firmware().left(1603));
    }
}

TEST(Loader, VerifiesAnEmptyFileAndSkipsBootEntryOfADeviceInBoot)
{
    Bench bench;
    bench.settings.in_boot = true;
    bench.choose("M1_0.bin", "");
    const QStringList lines = bench.run();
    EXPECT_EQ(letters_of(lines), "adc");
    EXPECT_TRUE(lines.contains("> 64 00 00 00 00 00 00 00 00 FF FF FF FF 01"));
    EXPECT_EQ(lines.filter("progress "), QStringList{"progress 0 0"});
}

TEST(Loader, LeavesARunAloneWhenStartedDuringIt)
{
    Bench bench;
    bench.on_line = [&] {
        if (bench.lines.last() == "ldr: Sending firmware file ...")
            bench.loader.upgrade_start();
    };
    EXPECT_EQ(bench.run().filter(QRegularExpression("^box |^started ")),
              (QStringList{"started 10000", "box Upgrade in progress, please wait",
                           "box File sent and verified OK"}));
}

TEST(Loader, RefusesFilesThatItCannotReadWhole)
{
    QTemporaryDir dir;
    QFile sparse(dir.filePath("M1_huge.bin"));
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(0x80000000LL));
    const QString sized_4096 = "/sys/devices/system/cpu/online"; // but gives a few bytes only
    const struct
    {
        QString path;
        const char* box;
        LoaderReason reason;
    } rows[] = {
        {dir.filePath("M1_absent.bin"), "^box Open file failed$", LoaderReason::FileNotOpened},
        {"/dev/null", "^box Open file failed$", LoaderReason::FileNotOpened},
        {sparse.fileName(), "^box File too large \\(2147483648 bytes\\), 2147483647 bytes at most$",
         LoaderReason::FileTooLarge},
        {sized_4096, "^box Read file failed \\(\\d+ of 4096 bytes\\)$", LoaderReason::FileCutShort},
    };
    Bench bench;
    for (const auto& row : rows) {
        if (row.path == sized_4096 && QFileInfo(sized_4096).size() != 4096)
            continue; // no such file on this kernel
        bench.loader.filename_set(row.path);
        const QStringList lines = bench.run();
        EXPECT_EQ(lines.size(), 2);
        EXPECT_EQ(lines.filter(QRegularExpression(row.box)).size(), 1) << row.box;
        EXPECT_EQ(int(bench.loader.outcome().ending), int(LoaderEnding::FileNotRead));
        EXPECT_EQ(int(bench.loader.outcome().reason), int(row.reason));
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they need the address space
    ASSERT_TRUE(sparse.resize(0x7FFFFFFF));
    bench.loader.filename_set(sparse.fileName());
    rlimit before = {};
    getrlimit(RLIMIT_AS, &before);
    const rlimit short_of_it = {0x70000000, before.rlim_max};
    setrlimit(RLIMIT_AS, &short_of_it);
    EXPECT_EQ(bench.run().last(), "box Alloc memory (2147483647 bytes) failed");
    setrlimit(RLIMIT_AS, &before);
#endif
}
