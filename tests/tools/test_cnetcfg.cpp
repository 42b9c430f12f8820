// CnetCfg: its operations on one device, and the search on the air.
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

QByteArray block()
{
    QByteArray bytes;
    for (int i = 0; i < CNET_BLOCK_SIZE; ++i)
        bytes.append(char(200 + i));
    return bytes;
}

// Writes to here and reads from here.
struct Memory
{
    quint32 words[CNET_BLOCK_WORDS] = {};
    char extra[5] = {};
    char info[15] = {};
};

struct Operation
{
    int (*call)(CnetCfg&, Memory&);
    QByteArray request;
    QByteArray payload; // of a good answer; empty when none is read
    int success;
    int failure;     // for no answer
    int checked = 0; // bytes at the payload's front that must be so
    bool status = false;
};

// clang-format off
std::vector<Operation> operations()
{
    return {
        {[](CnetCfg& c, Memory& m) { return c.local_info_get(m.info); }, hex("AB D1 BA"), QByteArray(7, '\1'), 7, 0},
        {[](CnetCfg& c, Memory& m) { return c.local_info_get_ext(m.info); }, hex("AB 61 BA"), QByteArray(15, '\1'), 15, 0},
        {[](CnetCfg& c, Memory& m) { return c.remote_cfg_get(SHORT, m.words, m.extra); },
         hex("AB D2") + SHORT + LENGTH + hex("BA"), SHORT + LENGTH + block() + FURTHER, 61, 0, 4},
        {[](CnetCfg& c, Memory& m) { return c.remote_cfg_get_ext(LONG, m.words, m.extra); },
         hex("AB 62") + LONG + LENGTH + hex("BA"), LONG + LENGTH + block() + FURTHER, 67, 0, 10},
        {[](CnetCfg& c, Memory& m) { return c.remote_cfg_set(SHORT, m.words); },
         hex("AB D3") + SHORT + LENGTH + block() + hex("BA"), SHORT + hex("00"), 0, -1, 2, true},
        {[](CnetCfg& c, Memory& m) { return c.remote_cfg_set_ext(LONG, m.words); },
         hex("AB 63") + LONG + LENGTH + block() + hex("BA"), LONG + hex("00"), 0, -1, 8, true},
        {[](CnetCfg& c, Memory&) { return c.local_chan_baud_set(30, 3); }, hex("AB D4 1E 03 BA"), hex("00"), 0, -1, 0, true},
        {[](CnetCfg& c, Memory&) { return c.remote_value_get(SHORT); },
         hex("AB DC AB CD BA"), hex("00 00 81"), -127, -128},
        {[](CnetCfg& c, Memory&) { return c.remote_value_get_ext(LONG, nullptr); },
         hex("AB 6C") + LONG + hex("BA"), LONG + hex("7F 80"), 127, -128},
        {[](CnetCfg& c, Memory&) { int second = -128; c.remote_value_get_ext(LONG, &second); return second; },
         hex("AB 6C") + LONG + hex("BA"), LONG + hex("7F 81"), -127, -128},
        {[](CnetCfg& c, Memory&) { return c.cmd_d7_send(SHORT, TWO); }, hex("AB D7 AB CD 00 FF BA"), {}, 7, 7},
        {[](CnetCfg& c, Memory&) { return c.cmd_67_send(LONG, TWO); }, hex("AB 67") + LONG + hex("00 FF BA"), {}, 13, 13},
        {[](CnetCfg& c, Memory&) { return c.cmd_6b_send(LONG, TWO); }, hex("AB 6B") + LONG + hex("00 FF BA"), {}, 13, 13},
        {[](CnetCfg& c, Memory&) { return c.cmd_send(0xD7, 0x1234); }, hex("AB D7 12 34 BA"), {}, 5, 5},
        {[](CnetCfg& c, Memory&) { return c.cmd_send(0xD7, TWO.constData()); }, hex("AB D7 00 FF BA"), {}, 5, 5},
        {[](CnetCfg& c, Memory&) { return c.cmd_send(0xD7, 0x1234, TWO.constData(), 1); },
         hex("AB D7 12 34 00 BA"), {}, 6, 6},
    };
}
// clang-format on

// A link that answers with this payload, and a CnetCfg on it.
struct Device
{
    Device(const Operation& operation, const QByteArray& payload, char cmd = 0)
    {
        std::memcpy(memory.words, block().constData(), CNET_BLOCK_SIZE);
        link.reply(hex("AB") + char(operation.request[1] ^ cmd) + payload + hex("BA"));
        result = operation.call(cfg, memory);
    }

    MemoryLink link;
    CnetCfg cfg{&link};
    Memory memory;
    int result;
};

} // namespace

TEST(CnetCfg, SendsEachRequestAndTakesNoAnswerButItsOwn)
{
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.request.toHex().toStdString());
        const QByteArray good = operation.payload;
        Device device(operation, good);
        EXPECT_EQ(device.result, operation.success);
        EXPECT_EQ(device.link.written, QByteArrayList{operation.request});
        device.link.arrive(hex("AB") + operation.request[1] + good + hex("BA")); // too early
        EXPECT_EQ(operation.call(device.cfg, device.memory), operation.failure);

        device.link.close();
        QSignalSpy logs(&device.cfg, &CnetCfg::log);
        EXPECT_EQ(operation.call(device.cfg, device.memory), qMin(operation.failure, -1));
        EXPECT_EQ(logs.last()[0].toString(), "cfg: link is not open!!, please check");
        CnetCfg unlinked(nullptr);
        EXPECT_LT(operation.call(unlinked, device.memory), 0);
        if (good.isEmpty())
            continue;

        QByteArrayList wrong = {good.chopped(1)};
        if (operation.checked > 0)
            wrong << QByteArray(good).replace(0, 1, "?")
                  << QByteArray(good).replace(operation.checked - 1, 1, "?");
        if (operation.status)
            wrong << good.chopped(1) + '\1';
        for (const QByteArray& payload : wrong)
            EXPECT_NE(Device(operation, payload).result, operation.success);
        EXPECT_EQ(Device(operation, good, 1).result, operation.failure); // another command
    }
}

TEST(CnetCfg, HandsOutTheConfigurationAndWhatFollows)
{
    for (const Operation& get : {operations()[2], operations()[3]}) {
        QByteArray payload = get.payload;
        const Device device(get, payload.replace(get.checked, 1, "?")); // not as it was
        EXPECT_EQ(std::memcmp(device.memory.words, payload.constData() + get.checked, 52), 0);
        EXPECT_EQ(QByteArray(device.memory.extra, 5), FURTHER);
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
        {hex("AB D1 BA"), 0, ""}, // no payload
        {hex("AB D1 05 06 BA"), 2, ""},
        {hex("AB D1 05 06 07 08 BA"), 3, "read bytes (4) is greater then needed (3)"},
    };
    for (const auto& row : rows) {
        GenerousLink link;
        CnetCfg cfg(&link);
        QSignalSpy logs(&cfg, &CnetCfg::log);
        link.arrive(row.frame);
        QByteArray out(3, '\0');
        EXPECT_EQ(cfg.resp_read(0xD1, out.data(), 3), row.result);
        EXPECT_EQ(logs.isEmpty() ? QString("") : logs.takeFirst()[0].toString(), row.log);
        EXPECT_EQ(out.left(row.result), row.frame.mid(2, row.result));
    }
    EXPECT_EQ(CnetCfg(nullptr).resp_read(0xD1, nullptr, 0), -19);
}
