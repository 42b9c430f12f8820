// The operations of CnetCfg on one device: requests, answers and failures.

#include "cnetcfg.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <memorylink.h>
#include <print.h>

namespace {

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

const QByteArray SHORT = hex("AB CD");
const QByteArray LONG = hex("01 02 03 04 05 06 07 BA");
const QByteArray TWO = hex("00 FF");

QByteArray block()
{
    QByteArray bytes;
    for (int i = 0; i < CNET_BLOCK_SIZE; ++i)
        bytes.append(char(200 + i));
    return bytes;
}

const quint32* words()
{
    static quint32 values[CNET_BLOCK_WORDS];
    std::memcpy(values, block().constData(), sizeof values);
    return values;
}

struct Operation
{
    int (*call)(CnetCfg&);
    QByteArray request;
    QByteArray payload; // of a good answer
    int success;
    int failure; // for no answer
};

// clang-format off
std::vector<Operation> operations()
{
    static char out[15];
    const QByteArray set = hex("00 34") + block() + hex("BA");
    return {
        {[](CnetCfg& c) { return c.local_info_get(out); }, hex("AB D1 BA"), QByteArray(7, '\1'), 7, 0},
        {[](CnetCfg& c) { return c.local_info_get_ext(out); }, hex("AB 61 BA"), QByteArray(15, '\1'), 15, 0},
        {[](CnetCfg& c) { return c.remote_cfg_set(SHORT, words()); },
         hex("AB D3") + SHORT + set, SHORT + hex("00"), 0, -1},
        {[](CnetCfg& c) { return c.remote_cfg_set_ext(LONG, words()); },
         hex("AB 63") + LONG + set, LONG + hex("00"), 0, -1},
        {[](CnetCfg& c) { return c.local_chan_baud_set(30, 3); }, hex("AB D4 1E 03 BA"), hex("00"), 0, -1},
        {[](CnetCfg& c) { return c.remote_value_get(SHORT); },
         hex("AB DC AB CD BA"), hex("00 00 81"), -127, -128},
        {[](CnetCfg& c) { return c.remote_value_get_ext(LONG, nullptr); },
         hex("AB 6C") + LONG + hex("BA"), LONG + hex("7F 80"), 127, -128},
        {[](CnetCfg& c) { return c.cmd_d7_send(SHORT, TWO); }, hex("AB D7 AB CD 00 FF BA"), {}, 7, 7},
        {[](CnetCfg& c) { return c.cmd_67_send(LONG, TWO); }, hex("AB 67") + LONG + hex("00 FF BA"), {}, 13, 13},
        {[](CnetCfg& c) { return c.cmd_6b_send(LONG, TWO); }, hex("AB 6B") + LONG + hex("00 FF BA"), {}, 13, 13},
        {[](CnetCfg& c) { return c.cmd_send(0xD7, 0x1234); }, hex("AB D7 12 34 BA"), {}, 5, 5},
        {[](CnetCfg& c) { return c.cmd_send(0xD7, TWO.constData()); }, hex("AB D7 00 FF BA"), {}, 5, 5},
        {[](CnetCfg& c) { return c.cmd_send(0xD7, 0x1234, TWO.constData(), 1); },
         hex("AB D7 12 34 00 BA"), {}, 6, 6},
    };
}
// clang-format on

} // namespace

TEST(CnetCfg, SendsEachRequestAndTakesItsAnswer)
{
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.request.toHex().toStdString());
        MemoryLink link;
        CnetCfg cfg(&link);
        const QByteArray answer = operation.request.left(2) + operation.payload + hex("BA");
        link.arrive(answer); // of an earlier request: dropped
        EXPECT_EQ(operation.call(cfg), operation.failure);
        EXPECT_EQ(link.written, QByteArrayList{operation.request});
        link.reply(answer);
        EXPECT_EQ(operation.call(cfg), operation.success);
        link.reply(answer.left(answer.size() - 2) + hex("BA")); // one byte short
        EXPECT_NE(operation.call(cfg), operation.payload.isEmpty() ? 0 : operation.success);

        link.close();
        QSignalSpy logs(&cfg, &CnetCfg::log);
        EXPECT_EQ(operation.call(cfg), operation.failure == -128 ? -128 : -1);
        EXPECT_EQ(logs.last()[0].toString(), "cfg: link is not open!!, please check");
        CnetCfg unlinked(nullptr);
        EXPECT_LT(operation.call(unlinked), 0);
    }
}

TEST(CnetCfg, ReadsAConfigurationOfTheAddressAskedForOnly)
{
    struct Case
    {
        const char* name;
        QByteArray payload;
        bool whole;
    };
    for (const bool ext : {false, true}) {
        const QByteArray addr = ext ? LONG : SHORT;
        const QByteArray cmd = hex(ext ? "AB 62" : "AB D2");
        const QByteArray rest = block() + hex("F1 F2 F3 F4 F5");
        const Case cases[] = {
            {"good", addr + hex("00 34") + rest, true},
            {"other address", QByteArray(addr.size(), '\1') + hex("00 34") + rest, false},
            {"other length", addr + hex("00 33") + rest, false},
            {"short", addr + hex("00 34") + block(), false},
            {"cut by what is asked for", addr + hex("00 34") + rest + hex("F6"), false},
        };
        for (const Case& row : cases) {
            SCOPED_TRACE(row.name);
            MemoryLink link;
            CnetCfg cfg(&link);
            link.reply(cmd + row.payload + hex("BA"));
            quint32 got[CNET_BLOCK_WORDS] = {};
            QByteArray extra(5, '\0');
            const int result = ext ? cfg.remote_cfg_get_ext(addr, got, extra.data())
                                   : cfg.remote_cfg_get(addr, got, extra.data());
            EXPECT_EQ(result, row.whole ? 57 + addr.size() + 2 : 0);
            EXPECT_EQ(link.written, QByteArrayList{cmd + addr + hex("00 34 BA")});
            EXPECT_EQ(std::memcmp(got, words(), sizeof got) == 0, row.whole);
            EXPECT_EQ(extra, row.whole ? hex("F1 F2 F3 F4 F5") : QByteArray(5, '\0'));
        }
    }
}

TEST(CnetCfg, RefusesASetThatTheDeviceRefusesOrAnotherDeviceAnswers)
{
    const QByteArray answers[] = {hex("AB D3 AB CD 01 BA"), hex("AB D3 AB CC 00 BA"),
                                  hex("AB D2 AB CD 00 BA")};
    for (const QByteArray& answer : answers) {
        MemoryLink link;
        CnetCfg cfg(&link);
        link.reply(answer);
        EXPECT_EQ(cfg.remote_cfg_set(SHORT, words()), -1);
    }
}

TEST(CnetCfg, SaysWhatIsWrongWithAFrame)
{
    struct Case
    {
        QByteArray frame;
        int result;
        QString log;
    };
    const Case cases[] = {
        {"", 0, "cfg: read time out"},
        {hex("AB D1"), 0, "cfg: read a short frame, lenght = 2"},
        {hex("AA D1 00 BA"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D1 00 BB"), 0, "cfg: read a invalid frame, head or end flag not match"},
        {hex("AB D2 00 BA"), 0, "response cmd (210) is not we needed (209)"},
        {hex("AB D1 BA"), 0, ""}, // no payload
        {hex("AB D1 05 06 BA"), 2, ""},
    };
    for (const Case& row : cases) {
        MemoryLink link;
        CnetCfg cfg(&link);
        QSignalSpy logs(&cfg, &CnetCfg::log);
        link.arrive(row.frame);
        QByteArray out(7, '\0');
        EXPECT_EQ(cfg.resp_read(0xD1, out.data(), 7), row.result);
        EXPECT_EQ(logs.isEmpty() ? QString("") : logs.takeFirst()[0].toString(), row.log);
        EXPECT_EQ(out.left(row.result), row.frame.mid(2, row.result));
    }
    EXPECT_EQ(CnetCfg(nullptr).resp_read(0xD1, nullptr, 0), -19);
}

// More than it was asked for, as a link that hands on whole datagrams may.
class GenerousLink : public MemoryLink
{
public:
    int read(char* buffer, int nbytes) override { return MemoryLink::read(buffer, nbytes + 256); }
};

TEST(CnetCfg, DropsWhatALinkGivesBeyondTheNeed)
{
    GenerousLink link;
    CnetCfg cfg(&link);
    QSignalSpy logs(&cfg, &CnetCfg::log);
    link.reply(hex("AB D1") + QByteArray(7, '\1') + hex("02 03 BA"));
    QByteArray out(7, '\0');
    EXPECT_EQ(cfg.local_info_get(out.data()), 7);
    EXPECT_EQ(out, QByteArray(7, '\1'));
    EXPECT_EQ(logs.takeFirst()[0].toString(), "read bytes (9) is greater then needed (7)");
}

TEST(CnetCfg, HandsOutBothValuesOfALongAddress)
{
    MemoryLink link;
    CnetCfg cfg(&link);
    link.reply(hex("AB 6C") + LONG + hex("7F 80 BA"));
    int second = 0;
    EXPECT_EQ(cfg.remote_value_get_ext(LONG, &second), 127);
    EXPECT_EQ(second, -128);
}
