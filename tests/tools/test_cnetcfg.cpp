// CnetCfg: its operations on one device.
#include "toolrun.h"
#include "tools/cnetcfg.h"

#include <QSignalSpy>

namespace {

const QByteArray SHORT = hex("AB CD");
const QByteArray LONG = hex("01 02 03 04 05 06 07 BA");
const QByteArray TWO = hex("00 FF");
const QByteArray LENGTH = hex("00 34");
const QByteArray FURTHER = hex("F1 F2 F3 F4 F5");
const QByteArray BLOCK = QByteArray(51, '\xC8') + '\x01';
const auto* const WORDS = reinterpret_cast<const std::uint32_t*>(BLOCK.constData());

using Out = std::uint32_t[16]; // zero at first

struct Operation
{
    std::function<int(CnetCfg&, Out&)> call;
    QByteArray request; // without its head and end
    QByteArray payload; // of a good answer; empty when none is read
    int success = 0;
    int failure = 0;     // for no answer
    int address = 0;     // bytes at the payload's front that must be so
    QByteArray out = {}; // what a success reads
    bool status = false; // the payload ends with it
};

// clang-format off
const Operation OPERATIONS[] = {
    {[](auto& c, auto& out) { return c.local_info_get(out); },
     hex("D1"), hex("01 02 03 04 05 06 07"), 7, 0, 0, hex("01 02 03 04 05 06 07")},
    {[](auto& c, auto& out) { return c.local_info_get_ext(out); },
     hex("61"), QByteArray(15, '\1'), 15, 0, 0, QByteArray(15, '\1')},
    {[](auto& c, auto& out) { return c.remote_cfg_get(SHORT, out, out + 13); },
     hex("D2") + SHORT + LENGTH, SHORT + LENGTH + BLOCK + FURTHER, 61, 0, 4, BLOCK + FURTHER},
    {[](auto& c, auto& out) { return c.remote_cfg_get_ext(LONG, out, out + 13); },
     hex("62") + LONG + LENGTH, LONG + LENGTH + BLOCK + FURTHER, 67, 0, 10, BLOCK + FURTHER},
    {[](auto& c, auto&) { return c.remote_cfg_set(SHORT, WORDS); },
     hex("D3") + SHORT + LENGTH + BLOCK, SHORT + hex("00"), 0, -1, 2, {}, true},
    {[](auto& c, auto&) { return c.remote_cfg_set_ext(LONG, WORDS); },
     hex("63") + LONG + LENGTH + BLOCK, LONG + hex("00"), 0, -1, 8, {}, true},
    {[](auto& c, auto&) { return c.local_chan_baud_set(30, 3); },
     hex("D4 1E 03"), hex("00"), 0, -1, 0, {}, true},
    {[](auto& c, auto&) { return c.remote_value_get(SHORT); },
     hex("DC") + SHORT, hex("00 00 81"), -127, -128},
    {[](auto& c, auto& out) { return c.remote_value_get_ext(LONG, reinterpret_cast<int*>(out)); },
     hex("6C") + LONG, LONG + hex("7F 81"), 127, -128, 0, hex("81 FF FF FF")},
    {[](auto& c, auto&) { return c.cmd_d7_send(SHORT, TWO); }, hex("D7 AB CD 00 FF"), {}, 7, 7},
    {[](auto& c, auto&) { return c.cmd_67_send(LONG, TWO); }, hex("67") + LONG + TWO, {}, 13, 13},
    {[](auto& c, auto&) { return c.cmd_6b_send(LONG, TWO); }, hex("6B") + LONG + TWO, {}, 13, 13},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, 0x1234); }, hex("D7 12 34"), {}, 5, 5},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, TWO.constData()); }, hex("D7 00 FF"), {}, 5, 5},
    {[](auto& c, auto&) { return c.cmd_send(0xD7, 0x1234, TWO.constData(), 1); }, hex("D7 12 34 00"), {}, 6, 6},
};
// clang-format on

QByteArray framed(const QByteArray& content)
{
    return hex("AB") + content + hex("BA");
}

} // namespace

TEST(CnetCfg, SendsEachRequestAndTakesNoAnswerButItsOwn)
{
    using E = CnetOutcome;
    for (const Operation& operation : OPERATIONS) {
        const QByteArray command = operation.request.left(1), good = operation.payload;
        std::vector<std::pair<QByteArray, E>> replies = {{framed(command + good), E::Done}};
        if (!good.isEmpty())
            replies.insert(replies.end(), {{"", E::NoAnswer},
                                           {framed('?' + good), E::BadAnswer},
                                           {framed(command + good.chopped(1)), E::BadAnswer}});
        for (const int wrong : {0, operation.address - 1})
            if (operation.address > 0)
                replies.emplace_back(framed(command + QByteArray(good).replace(wrong, 1, "?")),
                                     E::BadAnswer);
        if (operation.status)
            replies.emplace_back(framed(command + good.chopped(1) + '\1'), E::Refused);
        for (const auto& [reply, outcome] : replies) {
            SCOPED_TRACE((operation.request + '/' + reply).toHex().toStdString());
            MemoryLink link;
            CnetCfg cfg(&link);
            Out out = {};
            link.arrive(framed(command + good)); // too early
            link.reply(reply);
            const int result = operation.call(cfg, out);
            EXPECT_EQ(link.written, QByteArrayList{framed(operation.request)});
            EXPECT_EQ(cfg.outcome(), outcome);
            EXPECT_EQ(result == operation.success, outcome == E::Done);
            EXPECT_TRUE(outcome == E::BadAnswer || result == operation.success ||
                        result == operation.failure);
            const QByteArray read(reinterpret_cast<char*>(out), sizeof out);
            EXPECT_TRUE(outcome != E::Done || read.startsWith(operation.out));
            link.close();
            EXPECT_EQ(operation.call(cfg, out), qMin(operation.failure, -1));
            EXPECT_EQ(cfg.outcome(), E::NoLink);
        }
        Out out = {};
        CnetCfg unlinked(nullptr);
        EXPECT_LT(operation.call(unlinked, out), 0);
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
    const std::tuple<QByteArray, int, QString> rows[] = {
        {"", 0, "cfg: read time out"},
        {hex("AB D1"), 0, "cfg: read a short frame, lenght = 2"},
        {hex("AA D1 00 BA"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D1 00 BB"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D2 00 BA"), 0, "response cmd (210) is not we needed (209)"},
        {hex("AB D1 05 06 07 08 BA"), 3, "read bytes (4) is greater then needed (3)"},
    };
    for (const auto& [frame, result, log] : rows) {
        GenerousLink link;
        CnetCfg cfg(&link);
        QSignalSpy logs(&cfg, &CnetCfg::log);
        link.arrive(frame);
        QByteArray out(3, '\0');
        EXPECT_EQ(cfg.resp_read(0xD1, out.data(), 3), result);
        EXPECT_EQ(logs.value(0).value(0), log);
        EXPECT_EQ(out.left(result), frame.mid(2, result));
    }
    EXPECT_EQ(CnetCfg(nullptr).resp_read(0xD1, nullptr, 0), -19);
}
