// Whole upgrade runs: the bytes, the signals and their order, and every way to fail.

#include "bootmodule.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sys/resource.h>

TEST(Loader, UpgradesByteForByteAndSendsOnlyTheDifferingPages)
{
    Bench bench;
    bench.module.mtu = 2048;
    bench.loader.pack_len_set(4096); // the device's MTU is the lower one
    bench.module.flash = firmware().replace(100, 1, "X").replace(9000, 1, "X");
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
    EXPECT_EQ(bench.module.flash, firmware());
}

namespace {

struct Failure
{
    const char* name;
    std::function<void(Bench&)> prepare;
    QStringList boxes;
    QString last_log;   // in front of the total time line
    QByteArray letters; // of the requests, in order
};

QByteArray letters_of(const QStringList& transcript)
{
    QByteArray letters;
    for (const QString& line : transcript) {
        if (line.startsWith("> "))
            letters.append(QByteArray::fromHex(line.mid(2, 2).toLatin1()));
    }
    return letters;
}

// Replies like this to all requests of one letter, from the nth on.
std::function<QByteArray(const QByteArray&)> spoil(char letter, const QByteArray& reply,
                                                   int nth = 1)
{
    return [=, seen = 0](const QByteArray& request) mutable {
        return request[0] == letter && ++seen >= nth ? reply : QByteArray();
    };
}

const QByteArray SILENCE(""); // not null: the module's own reply is replaced

} // namespace

TEST(Loader, EndsEachFailureWithItsBoxAndWithoutReboot)
{
    const QString no_info = "Get device infomation failed";
    const QString no_info_in_boot = "Get device info failed after device enter boot mode";
    const QString not_in_boot = "device not in boot mode, try again";
    const QString send_failed = "ldr: Firmware send failed, please retry";
    const QString wrong_firmware = "wrong firmware (M1_1.bin)\nfor module     (M2%1)\n"
                                   "Please select the right firmware";
    using B = Bench;
    // clang-format off
    const Failure failures[] = {
        {"silent device", [](B& b) { b.module.fault = spoil('a', SILENCE); }, {no_info},
         "ldr: get device infomation failed, error or no reply", "aaa"},
        {"short record", [](B& b) { b.module.fault = spoil('a', "a0123456789"); }, {no_info},
         "ldr: get device infomation failed, error or no reply", "aaa"},
        {"other command", [](B& b) { b.module.fault = spoil('a', "b01234567890"); }, {no_info},
         "ldr: get devie information failed, invalid reply", "aaa"},
        {"page size 0", [](B& b) { b.module.page_size = 0; }, {no_info},
         "ldr: device ROM page size 0B, MTU 1024B: neither may be 0", "aaa"},
        {"MTU 0", [](B& b) { b.module.mtu = 0; }, {no_info},
         "ldr: device ROM page size 4096B, MTU 0B: neither may be 0", "aaa"},
        {"pack_len 3", [](B& b) { b.loader.pack_len_set(3); }, {}, send_failed, "abad"},
        {"other module", [](B& b) { b.module.name = "M2%1"; }, {wrong_firmware, no_info},
         "hard info (5 bytes): a1 02 03 04", "a"},
        {"lost in boot", [](B& b) { b.module.fault = spoil('a', SILENCE, 2); }, {no_info_in_boot},
         "ldr: get device infomation failed, error or no reply", "abaaa"},
        {"stays in application", [](B& b) { b.module.obeys_enter = false; }, {not_in_boot},
         "hard info (5 bytes): a1 02 03 04", "aba"},
        {"no page check", [](B& b) { b.module.fault = spoil('d', "d"); }, {}, send_failed, "abadd"},
        {"odd page check", [](B& b) { b.module.fault = spoil('d', "e2"); }, {}, send_failed, "abadd"},
        {"no data reply", [](B& b) { b.module.fault = spoil('e', SILENCE, 2); }, {}, send_failed, "abadeee"},
        {"data refused", [](B& b) { b.module.fault = spoil('e', "e2"); }, {}, send_failed, "abadee"},
        {"no attempts", [](B& b) { b.loader.retry_count_set(0); }, {}, send_failed, "aba"},
        {"final differs", [](B& b) { b.module.fault = spoil('d', "d2", 4); }, {"File verify failed"},
         "ldr: block(offset=0, size=10000) CRC not match, please retry", "abadeeeedeeeedeed"},
        {"final silent", [](B& b) { b.module.fault = spoil('d', SILENCE, 4); }, {"File verify failed"},
         "ldr: block(offset=0, size=10000) verify failed, no reply", "abadeeeedeeeedeedd"},
    };
    // clang-format on
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.name);
        Bench bench;
        bench.loader.retry_count_set(2);
        bench.choose("M1_1.bin", firmware());
        failure.prepare(bench);
        QStringList transcript = bench.run();
        EXPECT_EQ(letters_of(transcript), failure.letters);
        EXPECT_EQ(transcript.takeLast(), "done");
        EXPECT_EQ(transcript.takeLast(), "ldr: total took 0 seconds");
        EXPECT_EQ(transcript.filter(QRegularExpression("^box ")).replaceInStrings("box ", ""),
                  failure.boxes);
        EXPECT_EQ(transcript.filter(QRegularExpression("^(ldr|hard info)")).last(),
                  failure.last_log);
        if (failure.letters == "aaa") {
            EXPECT_TRUE(transcript.contains("soft N/A"));
            EXPECT_TRUE(transcript.contains("hard none"));
        }
    }
}

TEST(Loader, TakesRepliesThatWaitUntilItHasMissedOne)
{
    Bench bench;
    const QByteArray data(4096, 'x');
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(data.constData());
    bench.module.fault = [](const QByteArray&) { return SILENCE; };
    bench.link.arrive(QByteArray("e\0", 2) + QByteArray("d\1d\0", 4));
    EXPECT_EQ(bench.loader.packet_send(bytes, 0, 8), 8);
    EXPECT_EQ(bench.loader.block_verify(0, 0, 8, false), Loader::BLOCK_DIFFERS);
    EXPECT_EQ(bench.loader.block_verify(0, 0, 8, true), 0);
    EXPECT_FALSE(bench.loader.file_send(bytes, 8)); // of a device not asked yet
    EXPECT_FALSE(bench.loader.block_send(bytes, 0, 8, 8));

    bench.module.fault = nullptr;
    bench.link.arrive("boot banner");
    EXPECT_EQ(bench.loader.dev_info_get(), -5);
    bench.link.arrive("more");
    EXPECT_EQ(bench.loader.dev_info_get(), 0);
    bench.loader.dev_boot_enter();
    EXPECT_EQ(bench.loader.dev_info_get_retry(), 0);
    EXPECT_TRUE(bench.loader.file_send(bytes, 4096));
    EXPECT_EQ(bench.module.flash, data);
    bench.loader.dev_reboot();
    EXPECT_EQ(bench.module.reboots, 1);
}

TEST(Loader, RefusesFilesThatItCannotReadWhole)
{
    QTemporaryDir dir;
    const QString huge = dir.filePath("M1_huge.bin");
    QFile sparse(huge);
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(0x80000000LL));
    const QString sized_4096 = "/sys/devices/system/cpu/online"; // but gives a few bytes only

    struct Refusal
    {
        QString path;
        QString box;
    };
    const Refusal refusals[] = {
        {dir.filePath("M1_absent.bin"), "^box Open file failed$"},
        {dir.path(), "^box Open file failed$"},
        {"/dev/null", "^box Open file failed$"},
        {huge, "^box File too large \\(2147483648 bytes\\), 2147483647 bytes at most$"},
        {sized_4096, "^box Read file failed \\(\\d+ of 4096 bytes\\)$"},
    };
    for (const Refusal& refusal : refusals) {
        if (refusal.path == sized_4096 && QFileInfo(sized_4096).size() != 4096)
            continue; // no such file on this kernel
        SCOPED_TRACE(refusal.path.toStdString());
        Bench bench;
        bench.loader.filename_set(refusal.path);
        const QStringList transcript = bench.run();
        ASSERT_EQ(transcript.size(), 2);
        EXPECT_EQ(transcript[0], "ldr: Upgrade thread started");
        EXPECT_TRUE(QRegularExpression(refusal.box).match(transcript[1]).hasMatch())
            << transcript[1].toStdString();
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they need the address space
TEST(Loader, SaysWhenMemoryIsShort)
{
    QTemporaryDir dir;
    QFile sparse(dir.filePath("M1_large.bin"));
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(0x7FFFFFFF));
    Bench bench;
    bench.loader.filename_set(sparse.fileName());
    rlimit before = {};
    getrlimit(RLIMIT_AS, &before);
    const rlimit short_of_it = {0x70000000, before.rlim_max};
    setrlimit(RLIMIT_AS, &short_of_it);
    const QStringList transcript = bench.run();
    setrlimit(RLIMIT_AS, &before);
    EXPECT_EQ(transcript.last(), "box Alloc memory (2147483647 bytes) failed");
}
#endif

TEST(Loader, CutsPacketsToTheLowerOfMtuAndPackLen)
{
    struct Cut
    {
        quint16 mtu;
        uint pack_len;
        QByteArray sizes; // of the requests that write
    };
    const Cut cuts[] = {{1024, 512, "517 517 517 69"},
                        {1024, 4096, "1029 581"},
                        {1024, 1027, "1029 581"},
                        {0xFFFF, 0xFFFFFFFF, "1605"},
                        {700, 0xFFFFFFFF, "705 705 205"}};
    for (const Cut& cut : cuts) {
        Bench bench;
        bench.module.mtu = cut.mtu;
        bench.loader.pack_len_set(cut.pack_len);
        bench.choose("M1_1.bin", firmware().left(1600));
        EXPECT_TRUE(bench.run().contains("box File sent and verified OK"));
        QByteArrayList sizes;
        for (const QByteArray& request : bench.link.written) {
            if (request[0] == 'e')
                sizes.append(QByteArray::number(request.size()));
        }
        EXPECT_EQ(sizes.join(' '), cut.sizes);
    }
}

TEST(Loader, VerifiesAnEmptyFileAndSkipsBootEntryOfADeviceInBoot)
{
    Bench bench;
    bench.module.in_boot = true;
    bench.choose("M1_0.bin", "");
    const QStringList transcript = bench.run();
    EXPECT_EQ(letters_of(transcript), "adc");
    EXPECT_TRUE(transcript.contains("> 64 00 00 00 00 00 00 00 00 FF FF FF FF 01"));
    EXPECT_EQ(transcript.filter("progress "), QStringList{"progress 0 0"});
    EXPECT_TRUE(transcript.contains("box File sent and verified OK"));
}

TEST(Loader, IsNotTakenInByALateReplyInFrontOfTheFinalVerify)
{
    constexpr uint LATENESS_MS = 30;
    Bench bench;
    bench.loader.verify_wait_ms_set(LATENESS_MS);
    bench.choose("M1_1.bin", firmware());
    bench.module.in_boot = true;
    bench.module.flash = firmware().replace(0, 1, "X");
    QElapsedTimer clock;
    qint64 quiet_ms = 0; // in front of the final request
    int checks = 0;
    QObject::connect(
        &bench.loader, &Loader::log, &bench.loader, [&] { clock.start(); }, Qt::DirectConnection);
    bench.module.fault = [&](const QByteArray& request) {
        if (request[0] == 'e')
            return QByteArray("e\0", 2); // accepted and lost
        if (request[0] != 'd' || ++checks < 3)
            return QByteArray();
        if (checks == 3)
            return SILENCE; // the last page, asked again
        quiet_ms = clock.elapsed();
        return checks == 4 ? QByteArray("d\0d\0", 4) : QByteArray(); // one late yes
    };
    const QStringList transcript = bench.run();
    EXPECT_TRUE(transcript.contains("box File verify failed"));
    EXPECT_EQ(letters_of(transcript), "adeeeedddd");
    EXPECT_GE(quiet_ms, LATENESS_MS);
}

TEST(Loader, LeavesARunAloneWhenStartedDuringIt)
{
    Bench bench;
    bench.choose("M1_1.bin", firmware());
    bench.gate.close_at(3);
    bench.loader.upgrade_start();
    ASSERT_TRUE(wait_until([&] { return bench.gate.is_reached(); }));
    bench.loader.upgrade_start();
    bench.gate.release();
    bench.finish();
    const QStringList transcript = bench.transcript.take();
    EXPECT_EQ(transcript.filter("box "), (QStringList{"box Upgrade in progress, please wait",
                                                      "box File sent and verified OK"}));
    EXPECT_EQ(transcript.filter("started ").size(), 1);
}
