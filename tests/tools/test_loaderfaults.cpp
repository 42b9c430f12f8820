// Upgrades of devices that fail, are late or answer rubbish, and aborts at any moment.
#include "loaderrun.h"

namespace {

using E = LoaderEnding;
using R = LoaderReason;

const char GOOD_END[] = "box File sent and verified OK";
const QByteArray SILENCE("");   // not null: the module's own reply is replaced
const QByteArray YES("d\0", 2); // to a verify request
const QByteArray TAKEN("e\0", 2);

// Prepares a module that replies like this to all requests of one letter, from the nth on.
std::function<void(LoaderRun&)> spoil(char letter, const QByteArray& reply, int nth = 1)
{
    return [=](LoaderRun& run) {
        run.fault = [=, seen = 0](const QByteArray& request) mutable {
            return request[0] == letter && ++seen >= nth ? reply : QByteArray();
        };
    };
}

} // namespace

TEST(LoaderFaults, EndEachRunWithItsReasonAfterItsRetriesAndWithoutReboot)
{
    const QMap<E, QString> last_lines = {
        {E::NoInfo, "box Get device infomation failed"},
        {E::WrongFirmware, "box Get device infomation failed"},
        {E::NoBootInfo, "box Get device info failed after device enter boot mode"},
        {E::NotInBoot, "box device not in boot mode, try again"},
        {E::SendFailed, "ldr: Firmware send failed, please retry"},
        {E::VerifyFailed, "box File verify failed"},
    };
    // clang-format off
    // Of each run: how it is prepared, its requests in order, a part of a line, ending and reason.
    const std::tuple<std::function<void(LoaderRun&)>, QByteArray, QString, E, R> rows[] = {
        {spoil('a', "a0123456789"), "aaa", "error or no reply", E::NoInfo, R::NoReply},
        {spoil('a', "b01234567890"), "aaa", "invalid reply", E::NoInfo, R::BadReply},
        {[](auto& run) { run.settings.page = 0; }, "aaa", "page size 0B", E::NoInfo, R::ZeroSize},
        {[](auto& run) { run.settings.mtu = 0; }, "aaa", "MTU 0B", E::NoInfo, R::ZeroSize},
        {[](auto& run) { run.settings.name = "M2%1"; }, "a", "wrong firmware (M1_1.bin)\nfor module     (M2%1)\n",
         E::WrongFirmware, R::None},
        {spoil('a', SILENCE, 2), "abaaa", "error or no reply", E::NoBootInfo, R::NoReply},
        {spoil('b', SILENCE), "aba", "M1 V1.02.030405 APP", E::NotInBoot, R::None},
        {[](auto& run) { run.loader.retry_count_set(0); }, "aba", "", E::SendFailed, R::None},
        {[](auto& run) { run.loader.pack_len_set(3); }, "abad", "below 4 bytes", E::SendFailed, R::ShortPacket},
        {spoil('d', "d"), "abadd", "(offset=0, size=4096) verify failed, no reply", E::SendFailed, R::NoReply},
        {spoil('d', "e2"), "abadd", "(offset=0, size=4096) verify failed, invalid", E::SendFailed, R::BadReply},
        {spoil('e', SILENCE, 2), "abadeee", "device no response", E::SendFailed, R::NoReply},
        {spoil('e', "e2"), "abadee", "packet was broken", E::SendFailed, R::PacketRefused},
        {spoil('d', "d2", 4), "abadeeeedeeeedeed", "size=10000) CRC not match", E::VerifyFailed, R::CrcDiffers},
        {spoil('d', SILENCE, 4), "abadeeeedeeeedeedd", "size=10000) verify failed, no reply",
         E::VerifyFailed, R::NoReply},
    };
    // clang-format on
    for (const auto& [prepare, letters, line, ending, reason] : rows) {
        LoaderRun run;
        run.loader.retry_count_set(2);
        run.loader.pack_len_set(4096); // the module's MTU, 1024, is the lower one
        prepare(run);
        QStringList lines = run.run();
        EXPECT_EQ(run.letters(), letters);
        EXPECT_FALSE(lines.filter(line).isEmpty()) << letters.constData();
        EXPECT_EQ(lines.takeLast(), "done");
        EXPECT_TRUE(lines.takeLast().startsWith("ldr: total took "));
        EXPECT_EQ(lines.takeLast(), last_lines[ending]);
        const bool unknown = ending == E::NoInfo || ending == E::NoBootInfo;
        EXPECT_EQ(lines.contains("soft N/A"), unknown);
        EXPECT_EQ(lines.contains("hard none"), unknown);
        EXPECT_EQ(run.loader.outcome().ending, ending);
        EXPECT_EQ(run.loader.outcome().reason, reason);
    }
}

TEST(LoaderFaults, AreDistinguishedByTheCodesOfEachExchange)
{
    const std::uint8_t data[8] = {};
    const auto info = [](Loader& l) { return l.dev_info_get(); };
    const auto packet = [&](Loader& l) { return l.packet_send_retry(data, 0, 8); };
    const auto check = [&](Loader& l) { return l.block_verify_retry(data, 0, 8, true); };
    const auto aborted_packet = [&](Loader& l) { return l.abort(), packet(l); };
    const auto aborted_check = [&](Loader& l) { return l.abort(), check(l); };
    // What came before the request, and answers nothing; the reply, and the result.
    const std::tuple<std::function<int(Loader&)>, QByteArray, QByteArray, int> rows[] = {
        {info, "", "a0123456789", -138},
        {info, "", "b01234567890", -5},
        {info, "", "a01234567890M2", -22},
        {info, "boot banner", {}, 0},
        {packet, "", "e", -138},
        {packet, "", YES, -11},
        {packet, TAKEN, "e\1", -11},
        {aborted_packet, "", TAKEN, -105},
        {check, YES, "d", -138},
        {check, "", "e\1", -5},
        {check, YES, "d\2", Loader::BLOCK_DIFFERS},
        {check, "", YES, 0},
        {aborted_check, "", YES, -105},
    };
    for (const auto& [call, waiting, reply, result] : rows) {
        LoaderRun run;
        run.fault = [&, reply = reply](const QByteArray&) { return reply; };
        run.link.arrive(waiting);
        EXPECT_EQ(call(run.loader), result) << reply.constData();
    }
    LoaderRun run; // of a device that was not asked yet
    EXPECT_FALSE(run.loader.file_send(data, 8));
    EXPECT_FALSE(run.loader.block_send(data, 0, 8, 8));
}

TEST(LoaderFaults, AreFollowedByThePauseThatIsSetAndSoIsEachPacket)
{
    LoaderRun run;
    run.loader.send_interval_set(30);
    run.settings.in_boot = true;
    run.fault = [&](const QByteArray& request) { // the first reply of each kind is lost
        return run.letters().count(request[0]) == 1 ? SILENCE : QByteArray();
    };
    EXPECT_TRUE(run.run().contains(GOOD_END));
    EXPECT_TRUE(run.letters().startsWith("aaddeee")) << run.letters().constData();
    for (const int request : {1, 3, 6}) // not after a packet's first attempt
        EXPECT_GE(run.waits_ms[request], 30) << request;
}

// The second copy comes while the loader already works on the next step. Only what comes from then
// on may be believed: page 2 differs, and a stale yes would leave it so.
TEST(LoaderFaults, ASecondCopyOfAReplyNeverVerifiesAFile)
{
    const std::pair<QString, bool> rows[] = {{"ldr: sending ", false},
                                             {"progress 10000 8192", false},
                                             {"ldr: Firmware verify ...", true}};
    for (const auto& [step, lossy] : rows) { // whether the module takes packets and loses them
        LoaderRun run;
        run.settings.in_boot = true;
        file_write(run.settings.image, firmware().replace(5000, 1, "X"));
        run.on_line = [&run, step = step] {
            if (run.lines.last().startsWith(step))
                run.link.arrive(YES);
        };
        if (lossy)
            spoil('e', TAKEN)(run);
        EXPECT_TRUE(run.run().contains(lossy ? "box File verify failed" : GOOD_END))
            << step.toStdString();
        EXPECT_EQ(run.flash() == firmware(), !lossy);
    }
}

// A reply of another letter shows that one too many has come; its like may follow each answer.
TEST(LoaderFaults, AfterAStrayReplyEachCheckWaits)
{
    LoaderRun run;
    run.settings.in_boot = true;
    file_write(run.settings.image, firmware());
    run.fault = [checks = 0](const QByteArray& request) mutable {
        return request[0] == 'd' && ++checks == 1 ? TAKEN : QByteArray();
    };
    EXPECT_TRUE(run.run().contains(GOOD_END));
    EXPECT_EQ(run.letters(), "adddddc");
    for (int check = 2; check <= 5; ++check)
        EXPECT_GE(run.waits_ms[check], 10);
}

TEST(LoaderFaults, ALateReplyToAPageCheckIsNoAnswerToTheFinalOne)
{
    LoaderRun run;
    run.loader.verify_wait_ms_set(30);
    run.settings.in_boot = true;
    file_write(run.settings.image, firmware().replace(0, 1, "X"));
    run.fault = [checks = 0](const QByteArray& request) mutable {
        if (request[0] == 'e')
            return TAKEN; // and lost
        checks += request[0] == 'd';
        return checks == 3   ? SILENCE   // the last page, asked again
               : checks == 4 ? YES + YES // one of them late
                             : QByteArray();
    };
    EXPECT_TRUE(run.run().contains("box File verify failed"));
    EXPECT_EQ(run.letters(), "adeeeedddd");
    EXPECT_GE(run.waits_ms.last(), 30);
}

TEST(LoaderAbort, EndsARunAtEachOfItsSteps)
{
    const QStringList whole = LoaderRun().run();
    const int waits = int(whole.indexOf("ldr: wait device enter boot ..."));
    const int in_boot = int(whole.indexOf("soft M1 V1.02.030405 BOOT"));
    const int reboots = int(whole.indexOf("ldr: device reboot"));
    ASSERT_TRUE(0 < waits && waits < in_boot && in_boot < reboots);
    for (int at = int(whole.indexOf("> 61")); at < reboots; ++at) {
        SCOPED_TRACE(whole[at].toStdString());
        LoaderRun run;
        int requests = 0; // up to the abort
        run.on_line = [&] {
            if (run.lines.size() != at + 1)
                return;
            run.loader.abort();
            requests = int(run.link.written.size());
        };
        const QStringList lines = run.run();
        EXPECT_EQ(lines.last(), "done");
        EXPECT_EQ(lines.contains("ldr: Upgrade progress aborted"), at <= waits);
        EXPECT_EQ(run.loader.outcome().ending, E::Aborted);
        EXPECT_FALSE(run.letters().contains('c'));
        // Only the first phase goes on to its end.
        EXPECT_LE(run.link.written.size() - requests, at < in_boot ? 2 : 0);
        run.on_line = nullptr;
        EXPECT_TRUE(run.run().contains(GOOD_END));
        EXPECT_EQ(run.flash(), firmware());
    }
}

#ifndef __SANITIZE_THREAD__ // it can't see the destructor's wait, which is inside Qt
TEST(LoaderAbort, HappensWhenTheLoaderIsDeleted)
{
    auto run = std::make_unique<LoaderRun>();
    run->loader.reset_wait_ms_set(200);
    std::atomic<bool> waits{false};
    run->on_line = [&, lines = &run->lines] {
        waits = waits || lines->last() == "ldr: wait device enter boot ...";
        EXPECT_NE(lines->last(), "> 63");
    };
    run->loader.upgrade_start();
    ASSERT_TRUE(wait_until([&] { return waits.load(); }));
    run.reset(); // ends the program when it leaves the thread alone
}
#endif
