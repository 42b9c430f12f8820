// CnetCfg: its operations on one device.
#include "toolrun.h"
#include "tools/cnetcfg.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

const QByteArray SHORT = hex("AB CD");
const QByteArray LONG = hex("01 02 03 04 05 06 07 BA");
const QByteArray TWO = hex("00 FF");
const QByteArray LENGTH = hex("00 34");
const QByteArray FURTHER = hex("F1 F2 F3 F4 F5");
const QByteArray BLOCK = QByteArray(51, '\xC8') + '\x01';

// Writes to here and reads from here.
struct Memory
{
    std::uint32_t words[CNET_BLOCK_WORDS] = {};
    char extra[5] = {};
    char info[15] = {};
};

// What a configuration was read as, or -2 for another one than the device's.
int read_as(int count, const Memory& got)
{
    const bool right = std::memcmp(got.words, BLOCK.constData(), CNET_BLOCK_SIZE) == 0 &&
                       QByteArray(got.extra, 5) == FURTHER;
    return count > 0 && !right ? -2 : count;
}

struct Operation
{
    std::function<int(CnetCfg&, Memory&)> call; // words hold BLOCK, the rest is 0
    QByteArray request;
    QByteArray payload; // of a good answer; empty when none is read
    int success;
    int failure;     // for no answer
    int checked = 0; // bytes at the payload's front that must be so
    bool status = false;
};

// clang-format off
const Operation OPERATIONS[] = {
    {[](auto& c, auto& m) { return c.local_info_get(m.info); }, hex("AB D1 BA"), QByteArray(7, '\1'), 7, 0},
    {[](auto& c, auto& m) { return c.local_info_get_ext(m.info); }, hex("AB 61 BA"), QByteArray(15, '\1'), 15, 0},
    {[](auto& c, auto&) { Memory got; return read_as(c.remote_cfg_get(SHORT, got.words, got.extra), got); },
     hex("AB D2") + SHORT + LENGTH + hex("BA"), SHORT + LENGTH + BLOCK + FURTHER, 61, 0, 4},
    {[](auto& c, auto&) { Memory got; return read_as(c.remote_cfg_get_ext(LONG, got.words, got.extra), got); },
     hex("AB 62") + LONG + LENGTH + hex("BA"), LONG + LENGTH + BLOCK + FURTHER, 67, 0, 10},
    {[](auto& c, auto& m) { return c.remote_cfg_set(SHORT, m.words); },
     hex("AB D3") + SHORT + LENGTH + BLOCK + hex("BA"), SHORT + hex("00"), 0, -1, 2, true},
    {[](auto& c, auto& m) { return c.remote_cfg_set_ext(LONG, m.words); },
     hex("AB 63") + LONG + LENGTH + BLOCK + hex("BA"), LONG + hex("00"), 0, -1, 8, true},
    {[](auto& c, auto&) { return c.local_chan_baud_set(30, 3); }, hex("AB D4 1E 03 BA"), hex("00"), 0, -1, 0, true},
    {[](auto& c, auto&) { return c.remote_value_get(SHORT); }, hex("AB DC AB CD BA"), hex("00 00 81"), -127, -128},
    {[](auto& c, auto&) { int second = 0; return 1000 * c.remote_value_get_ext(LONG, &second) + second; },
     hex("AB 6C") + LONG + hex("BA"), LONG + hex("7F 81"), 126873, -128000},
    {[](auto& c, auto&) { return c.cmd_d7_send(SHORT, TWO); }, hex("AB D7 AB CD 00 FF BA"), {}, 7, 7},
    {[](auto& c, auto&) { return c.cmd_67_send(LONG, TWO); }, hex("AB 67") + LONG + hex("00 FF BA"), {}, 13, 13},
    {[](auto& c, auto&) { return c.cmd_6b_send(LONG, TWO); }, hex("AB 6B") + LONG + hex("00 FF BA"), {}, 13, 13},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, 0x1234); }, hex("AB D7 12 34 BA"), {}, 5, 5},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, TWO.constData()); }, hex("AB D7 00 FF BA"), {}, 5, 5},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, 0x1234, TWO.constData(), 1); }, hex("AB D7 12 34 00 BA"), {}, 6, 6},
};
// clang-format on

} // namespace

TEST(CnetCfg, SendsEachRequestAndTakesNoAnswerButItsOwn)
{
    for (const Operation& operation : OPERATIONS) {
        SCOPED_TRACE(operation.request.toHex().toStdString());
        MemoryLink link;
        CnetCfg cfg(&link);
        Memory memory;
        std::memcpy(memory.words, BLOCK.constData(), CNET_BLOCK_SIZE);
        const auto expect = [&](int result, CnetOutcome outcome) {
            EXPECT_EQ(operation.call(cfg, memory), result);
            EXPECT_EQ(int(cfg.outcome()), int(outcome));
        };
        const auto frame = [&](const QByteArray& payload, char cmd = 0) {
            return hex("AB") + char(operation.request[1] ^ cmd) + payload + hex("BA");
        };
        const QByteArray good = operation.payload;
        const bool answered = !good.isEmpty();
        link.reply(frame(good));
        expect(operation.success, CnetOutcome::Done);
        EXPECT_EQ(link.written, QByteArrayList{operation.request});
        link.arrive(frame(good)); // too early
        expect(operation.failure, answered ? CnetOutcome::NoAnswer : CnetOutcome::Done);

        QByteArrayList wrong = {frame(good, 1), frame(good.chopped(1))}; // another command
        if (operation.checked > 0)
            wrong << frame(QByteArray(good).replace(0, 1, "?"))
                  << frame(QByteArray(good).replace(operation.checked - 1, 1, "?"));
        for (int i = 0; i < wrong.size() && answered; ++i) {
            link.reply(wrong[i]);
            EXPECT_NE(operation.call(cfg, memory), operation.success);
            EXPECT_EQ(int(cfg.outcome()), int(CnetOutcome::BadAnswer)) << i;
        }
        if (operation.status) {
            link.reply(frame(good.chopped(1) + '\1'));
            expect(operation.failure, CnetOutcome::Refused);
        }
        link.close();
        QSignalSpy logs(&cfg, &CnetCfg::log);
        expect(qMin(operation.failure, -1), CnetOutcome::NoLink);
        EXPECT_EQ(logs.last()[0].toString(), "cfg: link is not open!!, please check");
        CnetCfg unlinked(nullptr);
        EXPECT_LT(operation.call(unlinked, memory), 0);
    }
}

// More than it was asked for, as a link that hands on whole datagrams may.
class GenerousLink : public MemoryLink
{
public:
    int read(char* buffer, int nbytes) override { return MemoryLink::read(buffer, nbytes + 256); }
};

TEST(CnetCfg, SaysWhatIsWrongWithAFrame)
{
    const struct
    {
        QByteArray frame;
        int result;
        QString log;
    } rows[] = {
        {"", 0, "cfg: read time out"},
        {hex("AB D1"), 0, "cfg: read a short frame, lenght = 2"},
        {hex("AA D1 00 BA"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D1 00 BB"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D2 00 BA"), 0, "response cmd (210) is not we needed (209)"},
        {hex("AB D1 05 06 07 08 BA"), 3, "read bytes (4) is greater then needed (3)"},
    };
    for (const auto& row : rows) {
        GenerousLink link;
        CnetCfg cfg(&link);
        QSignalSpy logs(&cfg, &CnetCfg::log);
        link.arrive(row.frame);
        QByteArray out(3, '\0');
        EXPECT_EQ(cfg.resp_read(0xD1, out.data(), 3), row.result);
        EXPECT_EQ(logs.value(0).value(0).toString(), row.log);
        EXPECT_EQ(out.left(row.result), row.frame.mid(2, row.result));
    }
    EXPECT_EQ(CnetCfg(nullptr).resp_read(0xD1, nullptr, 0), -19);
}
