// Devices that answer rubbish: nothing crashes, nothing hangs, and nothing is taken for a success
// that the bytes don't say.

#include "bootmodule.h"
#include "cnetcfg.h"
#include "dorvcfg.h"
#include "qframernull.h"

#include <gtest/gtest.h>
#include <random>

namespace {

// Replies from a seed: of any length, and often nearly right.
class Rubbish
{
public:
    explicit Rubbish(unsigned seed)
        : random(seed)
    {
    }

    QByteArray operator()(const QByteArray& beginning, const QByteArray& ending)
    {
        QByteArray reply(below(4) == 0 ? below(1200) : below(140), '\0');
        for (char& byte : reply)
            byte = char(below(256));
        if (below(4) != 0)
            reply.replace(0, int(beginning.size()), beginning);
        if (below(4) != 0)
            reply.append(ending);
        return last = reply;
    }
    int below(int limit) { return int(random() % unsigned(limit)); }

    QByteArray last;

private:
    std::mt19937 random;
};

constexpr unsigned SEEDS = 300;

} // namespace

TEST(Rubbish, NeverPassesForAnUpgrade)
{
    Bench bench;
    bench.choose("M1_1.bin", firmware());
    for (unsigned seed = 1; seed <= SEEDS; ++seed) {
        SCOPED_TRACE(seed);
        Rubbish rubbish(seed);
        bench.module = BootModule();
        bench.module.in_boot = true;
        bench.module.fault = [&](const QByteArray& request) {
            if (request[0] == 'a' && rubbish.below(2) == 0)
                return QByteArray(); // the true record, so that the later phases are met
            QByteArray reply = rubbish(request.left(1) + (rubbish.below(8) != 0 ? '\0' : '\1'), {});
            if (request[0] == 'd' && request.endsWith('\1') &&
                reply.startsWith(QByteArray("d\0", 2)))
                reply[1] = '\2'; // all but a yes to the final question
            return reply.isNull() ? QByteArray("") : reply;
        };
        const QStringList transcript = bench.run();
        EXPECT_EQ(transcript.last(), "done");
        EXPECT_FALSE(transcript.contains("> 63"));
        EXPECT_FALSE(transcript.contains("box File sent and verified OK"));
    }
}

namespace {

// An operation that says whether it succeeded, and what the bytes say, asked behind it.
struct Claim
{
    QByteArray key; // stands in most replies
    std::function<bool()> said;
    std::function<bool()> holds;
};

} // namespace

TEST(Rubbish, NeverPassesForACnetDevice)
{
    const QByteArray addr = "\x01\x02\x03\x04\x05\x06\x07\x08";
    const QByteArray length("\0\x34", 2);
    const QByteArray done("\0", 1);
    MemoryLink link;
    CnetCfg cfg(&link);
    Rubbish rubbish(1);
    QByteArray key;
    link.device = [&](const QByteArray& request) {
        return rubbish(request.left(2) + key, QByteArray("\0\xBA", 2));
    };
    // Whether the reply, cut to what was asked for, is a frame of this command and payload size.
    const auto framed = [&](int cmd, int size, const QByteArray& beginning) {
        const QByteArray frame = rubbish.last.left(size + 3);
        return frame.size() == size + 3 && frame.endsWith('\xBA') &&
               frame.startsWith(QByteArray("\xAB").append(char(cmd)) + beginning);
    };
    quint32 block[CNET_BLOCK_WORDS] = {};
    char out[15];
    const QByteArray short_addr = addr.left(2);
    // clang-format off
    const Claim claims[] = {
        {{}, [&] { return cfg.local_info_get(out) == 7; }, [&] { return framed(0xD1, 7, {}); }},
        {{}, [&] { return cfg.local_info_get_ext(out) == 15; }, [&] { return framed(0x61, 15, {}); }},
        {done, [&] { return cfg.local_chan_baud_set(9, 0) == 0; }, [&] { return framed(0xD4, 1, done); }},
        {short_addr + length, [&] { return cfg.remote_cfg_get(addr, block, out) == 61; },
         [&] { return framed(0xD2, 61, short_addr + length); }},
        {addr + length, [&] { return cfg.remote_cfg_get_ext(addr, block, out) == 67; },
         [&] { return framed(0x62, 67, addr + length); }},
        {short_addr + done, [&] { return cfg.remote_cfg_set(addr, block) == 0; },
         [&] { return framed(0xD3, 3, short_addr + done); }},
        {addr + done, [&] { return cfg.remote_cfg_set_ext(addr, block) == 0; },
         [&] { return framed(0x63, 9, addr + done); }},
        {{}, [&] { return cfg.remote_value_get(addr) != -128; },
         [&] { return framed(0xDC, 3, {}) && rubbish.last[4] != '\x80'; }},
        {{}, [&] { return cfg.remote_value_get_ext(addr, nullptr) != -128; },
         [&] { return framed(0x6C, 10, {}) && rubbish.last[10] != '\x80'; }},
    };
    // clang-format on
    int successes = 0;
    for (unsigned n = 0; n < 20 * SEEDS; ++n) {
        for (const Claim& claim : claims) {
            key = claim.key;
            const bool said = claim.said();
            EXPECT_EQ(said, claim.holds()) << &claim - claims << " at " << n;
            successes += said;
        }
    }
    EXPECT_GT(successes, 0); // or the rubbish was too poor to tempt anything
}

TEST(Rubbish, NeverPassesForAnAgreementOfTheDorvModule)
{
    MemoryLink link;
    QFramerNull framer(&link);
    DorvCfg cfg(nullptr);
    cfg.framer_set(&framer);
    Rubbish rubbish(2);
    const QByteArray tails[] = {"ok\r\n", "ok", "1,2,3", "1,nan,-inf,1e99,0x,,7", "a", "abp", "0x"};
    link.device = [&](const QByteArray&) { return rubbish({}, tails[rubbish.below(7)]); };
    const auto contains = [&](const char* text, int size) {
        return [&rubbish, text, size] { return rubbish.last.left(size).contains(text); };
    };
    char bytes[16] = {};
    std::uint16_t words[3];
    float floats[4];
    std::uint32_t addr = 0;
    int choice = 0;
    const auto ask = [&](int (DorvCfg::*get)(int*)) {
        return [&cfg, &choice, get] {
            choice = -1;
            return (cfg.*get)(&choice) == 0;
        };
    };
    // clang-format off
    const Claim claims[] = {
        {{}, [&] { return cfg.freq_set(1) == 0; }, contains("ok\r\n", 1024)},
        {{}, [&] { return cfg.appkey_set(bytes) == 0; }, contains("ok\r\n", 1024)},
        {{}, [&] { return cfg.deveui_set(bytes) == 0; }, contains("ok", 64)},
        {{}, [&] { return cfg.module_reboot() == 0; }, contains("ok", 16)},
        {{}, [&] { return cfg.mode_is_mac() == 0; }, [&] { return rubbish.last.startsWith("mac"); }},
        {{}, ask(&DorvCfg::join_get), [&] { return choice == 0 || choice == 1; }},
        {{}, ask(&DorvCfg::class_get), [&] { return choice >= 0 && choice <= 2; }},
        {{}, [&] { return cfg.deveui_get(bytes) == 0; }, [&] { return rubbish.last.size() >= 16; }},
        {{}, [&] { return cfg.nwkskey_get(bytes) == 0; }, [&] { return !rubbish.last.isEmpty(); }},
    };
    // clang-format on
    for (unsigned n = 0; n < 5 * SEEDS; ++n) {
        for (const Claim& claim : claims) {
            const bool said = claim.said();
            EXPECT_EQ(said, claim.holds()) << &claim - claims << " at " << n;
        }
        cfg.devaddr_get(&addr);
        cfg.heartbeat_get(&words[0], &words[1], &words[2]);
        cfg.pwrlimit_get(&words[0], &words[1]);
        cfg.comm_quality_get(1, &floats[0], &floats[1], &floats[2], &floats[3]);
        cfg.rssi_get(1);
    }
}
