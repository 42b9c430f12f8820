// Upgrades of devices that fail, are late or answer rubbish, and aborts at any moment.
#include "bench.h"

#include <QElapsedTimer>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

const char GOOD_END[] = "box File sent and verified OK";

// Replies like this to all requests of one letter, from the nth on.
std::function<QByteArray(const QByteArray&)> spoil(char letter, const QByteArray& reply,
                                                   int nth = 1)
{
    return [=, seen = 0](const QByteArray& request) mutable {
        return request[0] == letter && ++seen >= nth ? reply : QByteArray();
    };
}

} // namespace

TEST(LoaderFaults, EndEachRunWithItsReasonAfterItsRetriesAndWithoutReboot)
{
    using E = LoaderEnding;
    using R = LoaderReason;
    const QString no_info = "box Get device infomation failed";
    const QString no_record = "ldr: get device infomation failed, error or no reply";
    const QString zero = "ldr: device ROM page size %1B, MTU %2B: neither may be 0";
    const QString send_failed = "ldr: Firmware send failed, please retry";
    const QString verify_failed = "box File verify failed";
    const struct
    {
        std::function<void(Bench&)> prepare;
        const char* letters; // of the requests, in order
        QString line;        // somewhere
        QString end;         // before the total time line
        LoaderEnding ending;
        LoaderReason reason;
    } rows[] = {
        {[](Bench& b) { b.fault = spoil('a', "a0123456789"); }, "aaa", no_record, no_info,
         E::NoInfo, R::NoReply},
        {[](Bench& b) { b.fault = spoil('a', "b01234567890"); }, "aaa",
         "ldr: get devie information failed, invalid reply", no_info, E::NoInfo, R::BadReply},
        {[](Bench& b) { b.settings.page = 0; }, "aaa", zero.arg(0).arg(1024), no_info, E::NoInfo,
         R::ZeroSize},
        {[](Bench& b) { b.settings.mtu = 0; }, "aaa", zero.arg(4096).arg(0), no_info, E::NoInfo,
         R::ZeroSize},
        {[](Bench& b) { b.loader.pack_len_set(3); }, "abad",
         "ldr: packet length below 4 bytes, please set a larger one", send_failed, E::SendFailed,
         R::ShortPacket},
        {[](Bench& b) { b.settings.name = "M2%1"; }, "a",
         "box wrong firmware (M1_1.bin)\nfor module     (M2%1)\nPlease select the right firmware",
         no_info, E::WrongFirmware, R::None},
        {[](Bench& b) { b.fault = spoil('a', SILENCE, 2); }, "abaaa", no_record,
         "box Get device info failed after device enter boot mode", E::NoBootInfo, R::NoReply},
        {[](Bench& b) { b.fault = spoil('b', SILENCE); }, "aba", "soft M1 V1.02.030405 APP",
         "box device not in boot mode, try again", E::NotInBoot, R::None},
        {[](Bench& b) { b.fault = spoil('d', "d"); }, "abadd",
         "ldr: block(offset=0, size=4096) verify failed, no reply", send_failed, E::SendFailed,
         R::NoReply},
        {[](Bench& b) { b.fault = spoil('d', "e2"); }, "abadd",
         "ldr: block(offset=0, size=4096) verify failed, invalid reply", send_failed, E::SendFailed,
         R::BadReply},
        {[](Bench& b) { b.fault = spoil('e', SILENCE, 2); }, "abadeee",
         "ldr: data sent, device no response", send_failed, E::SendFailed, R::NoReply},
        {[](Bench& b) { b.fault = spoil('e', "e2"); }, "abadee",
         "ldr: data sent, packet was broken at receiver", send_failed, E::SendFailed,
         R::PacketRefused},
        {[](Bench& b) { b.loader.retry_count_set(0); }, "aba", send_failed, send_failed,
         E::SendFailed, R::None},
        {[](Bench& b) { b.fault = spoil('d', "d2", 4); }, "abadeeeedeeeedeed",
         "ldr: block(offset=0, size=10000) CRC not match, please retry", verify_failed,
         E::VerifyFailed, R::CrcDiffers},
        {[](Bench& b) { b.fault = spoil('d', SILENCE, 4); }, "abadeeeedeeeedeedd",
         "ldr: block(offset=0, size=10000) verify failed, no reply", verify_failed, E::VerifyFailed,
         R::NoReply},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.letters + row.line.toStdString());
        Bench bench;
        bench.loader.retry_count_set(2);
        row.prepare(bench);
        QStringList lines = bench.run();
        EXPECT_EQ(letters_of(lines), row.letters);
        EXPECT_TRUE(lines.contains(row.line)) << lines.join('\n').toStdString();
        EXPECT_EQ(lines.takeLast(), "done");
        EXPECT_EQ(lines.takeLast(), "ldr: total took 0 seconds");
        EXPECT_EQ(lines.takeLast(), row.end);
        EXPECT_EQ(lines.contains("soft N/A"),
                  row.line == no_record || row.letters == QString("aaa"));
        EXPECT_EQ(lines.contains("hard none"), lines.contains("soft N/A"));
        EXPECT_EQ(int(bench.loader.outcome().ending), int(row.ending));
        EXPECT_EQ(int(bench.loader.outcome().reason), int(row.reason));
    }
}

TEST(LoaderFaults, AreDistinguishedByTheCodesOfEachExchange)
{
    const std::uint8_t data[8] = {};
    const auto info = [](Loader& l) { return l.dev_info_get(); };
    const auto packet = [&](Loader& l) { return l.packet_send_retry(data, 0, 8); };
    const auto check = [&](Loader& l) { return l.block_verify_retry(data, 0, 8, false); };
    const auto aborted_packet = [&](Loader& l) { return l.abort(), packet(l); };
    const auto aborted_check = [&](Loader& l) { return l.abort(), check(l); };
    const struct
    {
        std::function<int(Loader&)> call;
        QByteArray reply;
        int result;
    } rows[] = {
        {info, "a0123456789", -138},
        {info, "b01234567890", -5},
        {info, "a01234567890M2", -22},
        {packet, "e", -138},
        {packet, "e\1", -11},
        {packet, QByteArray("d\0", 2), -11},
        {check, "d", -138},
        {check, "e\1", -5},
        {check, "d\2", 1},
        {aborted_packet, "e", -105},
        {aborted_check, "d", -105},
        {check, QByteArray("d\0", 2), 0},
    };
    for (const auto& row : rows) {
        Bench bench;
        bench.fault = [&](const QByteArray&) { return row.reply; };
        EXPECT_EQ(row.call(bench.loader), row.result) << row.reply.constData();
    }
}

TEST(LoaderFaults, WhatCameBeforeARequestAnswersNone)
{
    Bench bench;
    const std::uint8_t data[8] = {};
    EXPECT_FALSE(bench.loader.file_send(data, 8)); // of a device not asked yet
    EXPECT_FALSE(bench.loader.block_send(data, 0, 8, 8));
    const auto info = [](Loader& l) { return l.dev_info_get(); };
    const auto packet = [&](Loader& l) { return l.packet_send(data, 0, 8); };
    const auto check = [](Loader& l) { return l.block_verify(0, 0, 8, true); };
    const struct
    {
        std::function<int(Loader&)> call;
        QByteArray waiting;
        QByteArray reply;
        int result;
    } rows[] = {
        {info, "boot banner", {}, 0},
        {packet, QByteArray("e\0", 2), "e\1", -11},
        {check, QByteArray("d\0", 2), "d\1", Loader::BLOCK_DIFFERS},
        {check, QByteArray("d\0", 2), SILENCE, -138},
    };
    for (const auto& row : rows) {
        bench.fault = [&](const QByteArray&) { return row.reply; };
        bench.link.arrive(row.waiting);
        EXPECT_EQ(row.call(bench.loader), row.result) << row.waiting.constData();
    }
}

// The second copy comes while the loader already works on the next step. Only what comes from then
// on may be believed: page 2 differs, and a stale yes would leave it so.
TEST(LoaderFaults, ASecondCopyOfAReplyNeverVerifiesAFile)
{
    const struct
    {
        const char* step; // before which the copy arrives
        const char* end;
    } rows[] = {
        {"ldr: sending ", GOOD_END},
        {"progress 10000 8192", GOOD_END},
        {"ldr: Firmware verify ...", "box File verify failed"},
    };
    for (const auto& row : rows) {
        Bench bench;
        bench.settings.in_boot = true;
        bench.set_flash(firmware().replace(5000, 1, "X"));
        bench.on_line = [&] {
            if (bench.lines.last().startsWith(row.step))
                bench.link.arrive(QByteArray("d\0", 2));
        };
        const bool lying = row.end != GOOD_END;
        bench.fault = [lying](const QByteArray& request) { // takes the packet and loses it
            return lying && request[0] == 'e' ? QByteArray("e\0", 2) : QByteArray();
        };
        EXPECT_TRUE(bench.run().contains(row.end)) << row.step;
        EXPECT_EQ(bench.flash() == firmware(), !lying);
    }
}

// A reply of another letter shows that one too many has come; its like may follow each answer.
TEST(LoaderFaults, AfterAStrayReplyEachCheckWaits)
{
    Bench bench;
    bench.settings.in_boot = true;
    bench.set_flash(firmware().replace(9000, 1, "X"));
    bench.fault = [&, checks = 0](const QByteArray& request) mutable {
        return request[0] == 'd' && ++checks == 1 ? QByteArray("e\0", 2) : QByteArray();
    };
    QElapsedTimer clock;
    QVector<qint64> waits;
    bench.on_line = [&] {
        if (bench.lines.last().startsWith("progress 10000 "))
            clock.start();
        if (bench.lines.last().startsWith("> 64") && clock.isValid())
            waits += clock.restart();
    };
    EXPECT_TRUE(bench.run().contains(GOOD_END));
    ASSERT_EQ(waits.size(), 5);
    EXPECT_GE(*std::min_element(waits.begin() + 1, waits.end()), 10);
}

TEST(LoaderFaults, ALateReplyToAPageCheckIsNoAnswerToTheFinalOne)
{
    constexpr uint LATENESS_MS = 30;
    Bench bench;
    bench.loader.verify_wait_ms_set(LATENESS_MS);
    bench.settings.in_boot = true;
    bench.set_flash(firmware().replace(0, 1, "X"));
    QElapsedTimer clock;
    qint64 quiet_ms = 0; // before the final request
    bench.on_line = [&] {
        if (bench.lines.last() == "ldr: Firmware verify ...")
            clock.start();
    };
    bench.fault = [&, checks = 0](const QByteArray& request) mutable {
        if (request[0] == 'e')
            return QByteArray("e\0", 2); // accepted and lost
        if (request[0] != 'd' || ++checks < 3)
            return QByteArray();
        if (checks == 3)
            return SILENCE; // the last page, asked again
        quiet_ms = qMax(quiet_ms, clock.isValid() ? clock.elapsed() : 0);
        return checks == 4 ? QByteArray("d\0d\0", 4) : QByteArray(); // one late yes
    };
    const QStringList lines = bench.run();
    EXPECT_TRUE(lines.contains("box File verify failed"));
    EXPECT_EQ(letters_of(lines), "adeeeedddd");
    EXPECT_GE(quiet_ms, LATENESS_MS);
}

// Replies of any length from a seed, and often nearly right; only the yes that decides never comes.
TEST(LoaderFaults, RubbishNeverPassesForAnUpgrade)
{
    for (unsigned seed = 1; seed <= 100; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int limit) { return int(random() % unsigned(limit)); };
        Bench bench;
        bench.settings.in_boot = true;
        bench.fault = [&](const QByteArray& request) {
            if (request[0] == 'a' && below(2) == 0)
                return QByteArray(); // the true record, so that the later phases are met
            QByteArray reply(below(4) == 0 ? below(1200) : below(140), '\0');
            for (char& byte : reply)
                byte = char(below(256));
            if (below(4) != 0)
                reply.replace(0, 2, request.left(1) + (below(8) != 0 ? '\0' : '\1'));
            const bool yes = reply.startsWith(QByteArray("d\0", 2));
            return yes && request.endsWith('\1') ? QByteArray("d\2") : reply + SILENCE;
        };
        const QStringList lines = bench.run();
        EXPECT_EQ(lines.last(), "done");
        EXPECT_FALSE(lines.contains("> 63") || lines.contains(GOOD_END)) << seed;
    }
}

TEST(LoaderAbort, EndsARunAtEachOfItsSteps)
{
    const QStringList whole = Bench().run();
    const int waits = int(whole.indexOf("ldr: wait device enter boot ..."));
    const int in_boot = int(whole.indexOf("soft M1 V1.02.030405 BOOT"));
    const int last_page = int(whole.indexOf("> 64 00 00 20 00 00 00 07 10 4A B8 48 D4 00"));
    const int verified = int(whole.indexOf("ldr: block(offset=0, size=10000) verify ... [OK]"));
    ASSERT_TRUE(0 < waits && waits < in_boot && in_boot < last_page && last_page < verified);
    for (int at = int(whole.indexOf("ldr: get device info ...")); at <= verified; ++at) {
        SCOPED_TRACE(whole[at].toStdString());
        Bench bench;
        int requests = 0; // up to the abort
        bench.on_line = [&] {
            if (bench.lines.size() != at + 1)
                return;
            bench.loader.abort();
            requests = int(bench.lines.filter("> ").size());
        };
        const QStringList lines = bench.run();
        EXPECT_EQ(lines.last(), "done");
        const bool sends = at < last_page || whole[at].startsWith("ldr: sending ");
        const char* end = at <= waits ? "ldr: Upgrade progress aborted"
                          : sends     ? "ldr: Firmware send failed, please retry"
                                      : "box File verify failed";
        EXPECT_TRUE(lines.contains(end)) << lines.join('\n').toStdString();
        EXPECT_FALSE(lines.contains("> 63") || lines.contains(GOOD_END));
        EXPECT_EQ(int(bench.loader.outcome().ending), int(LoaderEnding::Aborted));
        const int more = int(lines.filter("> ").size()) - requests;
        EXPECT_LE(more, at < in_boot ? 2 : 0); // only the first phase goes on to its end
        bench.on_line = nullptr;
        EXPECT_TRUE(bench.run().contains(GOOD_END));
        EXPECT_EQ(int(bench.loader.outcome().ending), int(LoaderEnding::Upgraded));
        EXPECT_EQ(bench.flash(), firmware());
    }
}

#ifndef __SANITIZE_THREAD__ // it can't see the destructor's wait, which is inside Qt
TEST(LoaderAbort, HappensWhenTheLoaderIsDeleted)
{
    auto owned = std::make_unique<Bench>();
    Bench& bench = *owned;
    bench.loader.reset_wait_ms_set(200);
    std::atomic<bool> waits{false};
    bool rebooted = false;
    bench.on_line = [&] {
        waits = waits || bench.lines.last() == "ldr: wait device enter boot ...";
        rebooted = rebooted || bench.lines.last() == "> 63";
    };
    bench.loader.upgrade_start();
    ASSERT_TRUE(wait_until([&] { return waits.load(); }));
    owned.reset(); // ends the program when it leaves the thread alone
    EXPECT_FALSE(rebooted);
}
#endif
