// Whole upgrade runs: the bytes, the signals and their order.
#include "loaderrun.h"

#include <QFileInfo>
#include <QRegularExpression>

TEST(Loader, UpgradesByteForByteAndSendsOnlyTheDifferingPages)
{
    LoaderRun run;
    run.settings.mtu = 0xFFFF;
    run.loader.pack_len_set(2051); // rounded down to 2048
    file_write(run.settings.image, firmware().replace(100, 1, "X").replace(9000, 1, "X"));
    run.choose("M1_1.2.bin", firmware());
    const QStringList lines = run.run();
    EXPECT_EQ(lines.filter(QRegularExpression("^(?!ldr: |hard info)")).join(", "),
              "started 10000, progress 10000 0, "
              "> 61, soft M1 V1.02.030405 APP, hard A1 02 03 04 05, > 62, "
              "> 61, soft M1 V1.02.030405 BOOT, hard A1 02 03 04 05, progress 10000 0, "
              "> 64 00 00 00 00 00 00 10 00 B9 D3 E1 DE 00, "
              "> 65 00 00 00 00 00 07 0E 15 1C 23 2A 31 38, "
              "> 65 00 00 08 00 08 0F 16 1D 24 2B 32 39 40, progress 10000 4096, "
              "> 64 00 00 10 00 00 00 10 00 A4 2A 7A 60 00, progress 10000 8192, "
              "> 64 00 00 20 00 00 00 07 10 4A B8 48 D4 00, "
              "> 65 00 00 20 00 20 27 2E 35 3C 43 4A 51 58, "
              "> 64 00 00 00 00 00 00 27 10 57 5A F1 FE 01, > 63, "
              "box File sent and verified OK, done");
    EXPECT_EQ(lines.filter("hard info (5 bytes): a1 02 03 04").size(), 2);
    EXPECT_EQ(lines.filter("ldr: ").size(), 22); // a line for each step
    EXPECT_EQ(run.flash(), firmware());
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
        LoaderRun run;
        file_write(run.settings.image, firmware().replace(100, 1, "X").replace(9000, 1, "X"));
        run.fault = [&](const QByteArray& request) {
            if (row.abort && request.startsWith("e"))
                run.loader.abort();
            return request.toHex().startsWith(row.fault) ? QByteArray("") : QByteArray();
        };
        QStringList states;
        LoaderDevice device;
        const auto add = [&](quint32 offset, LoaderPage state) {
            states += QString::number(offset / 4096) + "EDGSF"[int(state)];
        };
        const auto take = [&](const LoaderDevice& found) { device = found; };
        QObject::connect(&run.loader, &Loader::page_state, &run.loader, add, Qt::DirectConnection);
        QObject::connect(&run.loader, &Loader::device_found, &run.loader, take,
                         Qt::DirectConnection);
        run.run();
        EXPECT_EQ(states.join(' '), row.states);
        EXPECT_EQ(device.soft_info, "M1 V1.02.030405 BOOT");
        EXPECT_EQ(device.hard_info, "\xA1\x02\x03\x04\x05");
        EXPECT_TRUE(device.in_boot && device.rom_page_size == 4096 && device.mtu == 1024);
    }
}

TEST(Loader, VerifiesAnEmptyFileAndSkipsBootEntryOfADeviceInBoot)
{
    LoaderRun run;
    run.settings.in_boot = true;
    run.choose("M1_0.bin", "");
    const QStringList lines = run.run();
    EXPECT_EQ(lines.filter("> ").join(", "),
              "> 61, > 64 00 00 00 00 00 00 00 00 FF FF FF FF 01, > 63");
    EXPECT_EQ(lines.filter("progress "), QStringList{"progress 0 0"});
}

TEST(Loader, LeavesARunAloneWhenStartedDuringIt)
{
    LoaderRun run;
    run.on_line = [&] {
        if (run.lines.last() == "ldr: Sending firmware file ...")
            run.loader.upgrade_start();
    };
    EXPECT_EQ(run.run().filter(QRegularExpression("^box |^started ")).join(", "),
              "started 10000, box Upgrade in progress, please wait, box File sent and verified OK");
}

TEST(Loader, RefusesFilesThatItCannotReadWhole)
{
    QTemporaryDir dir;
    QFile sparse(dir.filePath("M1_huge.bin"));
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(0x80000000LL));
    const QString sized_4096 = "/sys/devices/system/cpu/online"; // but gives a few bytes only
    using R = LoaderReason;
    const std::tuple<QString, QString, LoaderReason> rows[] = {
        {dir.filePath("M1_absent.bin"), "^box Open file failed$", R::FileNotOpened},
        {"/dev/null", "^box Open file failed$", R::FileNotOpened},
        {sparse.fileName(), "^box File too large \\(2147483648 bytes\\), 2147483647 bytes at most$",
         R::FileTooLarge},
        {sized_4096, "^box Read file failed \\(\\d+ of 4096 bytes\\)$", R::FileCutShort},
    };
    LoaderRun run;
    for (const auto& [path, box, reason] : rows) {
        if (path == sized_4096 && QFileInfo(path).size() != 4096)
            continue; // no such file on this kernel
        run.loader.filename_set(path);
        const QStringList lines = run.run();
        EXPECT_EQ(lines.size(), 2);
        EXPECT_EQ(lines.filter(QRegularExpression(box)).size(), 1) << box.toStdString();
        EXPECT_EQ(run.loader.outcome().ending, LoaderEnding::FileNotRead);
        EXPECT_EQ(run.loader.outcome().reason, reason);
    }
}
