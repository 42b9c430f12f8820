// Each command that sets something in the Dorv module: its bytes with extreme arguments, and which
// replies it takes for a yes.

#include "dorvcfg.h"
#include "qframernull.h"

#include <gtest/gtest.h>
#include <memorylink.h>
#include <print.h>

namespace {

enum Yes { ANY_REPLY, OK, OK_LINE };

struct Command
{
    std::function<int(DorvCfg&)> call;
    QByteArray bytes;
    Yes yes;
};

const char EUI[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67";
const char KEY[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67\x89\xAB\xCD\xEF\xFE\xDC\xBA\x98";

// clang-format off
const Command COMMANDS[] = {
    {[](DorvCfg& c) { return c.echo_off(); }, "at+echo=off\r", ANY_REPLY},
    {[](DorvCfg& c) { return c.module_reboot(); }, "at+reboot\r", OK},
    {[](DorvCfg& c) { return c.factory_reset(); }, "at+def\r", OK},
    {[](DorvCfg& c) { return c.command_mode_enter(); }, "+++\r", OK},
    {[](DorvCfg& c) { return c.mode_radio_set(); }, "at+mode=radio\r", ANY_REPLY},
    {[](DorvCfg& c) { return c.mode_pmac_set(); }, "at+mode=pmac\r", ANY_REPLY},
    {[](DorvCfg& c) { return c.mode_mac_set(); }, "at+mode=mac\r", ANY_REPLY},
    {[](DorvCfg& c) { return c.freq_set(0); }, "at+freq=0\r", OK_LINE},
    {[](DorvCfg& c) { return c.freq_set(0xFFFFFFFF); }, "at+freq=4294967295\r", OK_LINE},
    {[](DorvCfg& c) { return c.sf_set(255); }, "at+sf=255\r", OK_LINE},
    {[](DorvCfg& c) { return c.bw_set(0); }, "at+bw=7.8\r", OK_LINE},
    {[](DorvCfg& c) { return c.bw_set(4); }, "at+bw=31.25\r", OK_LINE},
    {[](DorvCfg& c) { return c.bw_set(9); }, "at+bw=500\r", OK_LINE},
    {[](DorvCfg& c) { return c.cr_set(0); }, "at+cr=4/5\r", OK_LINE},
    {[](DorvCfg& c) { return c.cr_set(3); }, "at+cr=4/8\r", OK_LINE},
    {[](DorvCfg& c) { return c.pwr_set(255); }, "at+pwr=255\r", OK_LINE},
    {[](DorvCfg& c) { return c.txprlen_set(65535); }, "at+txprlen=65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.rxprlen_set(65535); }, "at+rxprlen=65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.radio_rx_off(); }, "at+radiorx=0\r", OK},
    {[](DorvCfg& c) { return c.rxfmt_hex_set(); }, "at+rxfmt=hex\r", OK},
    {[](DorvCfg& c) { return c.rxfmt_set(0); }, "at+rxfmt=raw\r", OK},
    {[](DorvCfg& c) { return c.uartcfg_set(0xFFFFFFFF, 255, 2, 255); }, "at+uartcfg=4294967295,255,e,255\r", OK_LINE},
    {[](DorvCfg& c) { return c.uartcfg_set(0, 0, 1, 0); }, "at+uartcfg=0,0,n,0\r", OK_LINE},
    {[](DorvCfg& c) { return c.uartpack_set(0, 65535); }, "at+uartpack=0,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.irq_set(2, 65535); }, "at+irq=wdo,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.irq_set(1, 0); }, "at+irq=rise,0\r", OK_LINE},
    {[](DorvCfg& c) { return c.sleep_set(2, 65535, -1, 7); }, "at+sleep=deep,65535,level,low\r", OK_LINE},
    {[](DorvCfg& c) { return c.sleep_set(1, 0, 0, 65535); }, "at+sleep=off,0,timeout,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.devaddr_set(0xAB12); }, "at+devaddr=0xab12\r", OK},
    {[](DorvCfg& c) { return c.devaddr_set(0xFFFFFFFF); }, "at+devaddr=0xffffffff\r", OK},
    {[](DorvCfg& c) { return c.join_set(0, 0); }, "at+join=otaa,0\r", OK},
    {[](DorvCfg& c) { return c.join_set(-1, 65535); }, "at+join=abp,65535\r", OK},
    {[](DorvCfg& c) { return c.class_set(0); }, "at+class=a\r", OK},
    {[](DorvCfg& c) { return c.class_set(2); }, "at+class=c\r", OK},
    {[](DorvCfg& c) { return c.transcnf_set(1); }, "at+transcnf=cnf\r", OK_LINE},
    {[](DorvCfg& c) { return c.transcnf_set(255); }, "at+transcnf=uncnf\r", OK_LINE},
    {[](DorvCfg& c) { return c.transfport_set(255); }, "at+transfport=255\r", OK_LINE},
    {[](DorvCfg& c) { return c.pwrid_set(-128); }, "at+pwrid=-128\r", OK_LINE},
    {[](DorvCfg& c) { return c.pwrid_set(127); }, "at+pwrid=127\r", OK_LINE},
    {[](DorvCfg& c) { return c.dr_set(255); }, "at+dr=255\r", OK_LINE},
    {[](DorvCfg& c) { return c.retx_set(255); }, "at+retx=255\r", OK_LINE},
    {[](DorvCfg& c) { return c.adr_set(1); }, "at+adr=on\r", OK_LINE},
    {[](DorvCfg& c) { return c.adr_set(2); }, "at+adr=off\r", OK_LINE},
    {[](DorvCfg& c) { return c.joinadr_set(1); }, "at+joinadr=on\r", OK_LINE},
    {[](DorvCfg& c) { return c.joinadr_set(0); }, "at+joinadr=off\r", OK_LINE},
    {[](DorvCfg& c) { return c.linkchk_set(0, 1, 65535); }, "at+linkchk=0,1,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.ch_set(255, 0xFFFFFFFF); }, "at+ch=255,4294967295,1,5\r", OK_LINE},
    {[](DorvCfg& c) { return c.level_set(0xFFFFFFFF); }, "at+level=4294967295\r", OK_LINE},
    {[](DorvCfg& c) { return c.heartbeat_set(0, 1, 65535); }, "at+heartbeat=0,1,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.pwrlimit_set(0, 65535); }, "at+pwrlimit=0,65535\r", OK_LINE},
    {[](DorvCfg& c) { return c.deveui_set(EUI); }, "at+deveui=00FF0AB001234567\r", OK},
    {[](DorvCfg& c) { return c.appeui_set(EUI); }, "at+appeui=00FF0AB001234567\r", OK},
    {[](DorvCfg& c) { return c.appkey_set(KEY); }, "at+appkey=00FF0AB00123456789ABCDEFFEDCBA98\r", OK_LINE},
    {[](DorvCfg& c) { return c.appskey_set(KEY); }, "at+appskey=abp,00FF0AB00123456789ABCDEFFEDCBA98\r", OK_LINE},
    {[](DorvCfg& c) { return c.nwkskey_set(KEY); }, "at+nwkskey=abp,00FF0AB00123456789ABCDEFFEDCBA98\r", OK_LINE},
};
// clang-format on

} // namespace

TEST(AtCommands, GoOutOnceAndTakeTheirOwnYesOnly)
{
    struct Reply
    {
        QByteArray bytes;
        Yes least; // the strictest command that takes it
        bool none;
    };
    const Reply replies[] = {{"", ANY_REPLY, true},        {"error\r\n", ANY_REPLY, false},
                             {"OK\r\n", ANY_REPLY, false}, {"ok", OK, false},
                             {"ok\r\n", OK_LINE, false},   {"\r\nok\r\n", OK_LINE, false}};
    for (const Command& command : COMMANDS) {
        for (const Reply& reply : replies) {
            SCOPED_TRACE((command.bytes + " / " + reply.bytes).toStdString());
            MemoryLink link;
            QFramerNull framer(&link);
            DorvCfg cfg(nullptr);
            cfg.framer_set(&framer);
            link.arrive("ok\r\n"); // to an earlier command: dropped
            link.reply(reply.bytes);
            EXPECT_EQ(command.call(cfg), !reply.none && command.yes <= reply.least ? 0 : -1);
            EXPECT_EQ(link.written, QByteArrayList{command.bytes});
        }
    }
}

TEST(AtCommands, SendNothingForAnIndexOutOfRange)
{
    MemoryLink link;
    QFramerNull framer(&link);
    DorvCfg cfg(nullptr);
    cfg.framer_set(&framer);
    for (const int result : {cfg.rxfmt_set(2), cfg.rxfmt_set(-1), cfg.class_set(3),
                             cfg.class_set(-1), cfg.bw_set(10), cfg.bw_set(-1), cfg.cr_set(4)})
        EXPECT_EQ(result, -1);
    EXPECT_TRUE(link.written.isEmpty());
}

TEST(AtExchange, ComparesAndRepeatsAsTold)
{
    struct Exchange
    {
        int match;
        const char* expected;
        QByteArrayList replies;
        int result;
        int sent;
        QByteArray out;
    };
    const Exchange exchanges[] = {
        {DorvCfg::MATCH_CONTAINS, "ok", {"x", "", "an ok"}, 5, 3, "an o"},
        {DorvCfg::MATCH_CONTAINS, "ok", {"x", "", ""}, -3, 3, "x"},
        {DorvCfg::MATCH_CONTAINS, "ok", {"", "", "y"}, -4, 3, "y"},
        {DorvCfg::MATCH_CONTAINS, nullptr, {"x"}, 1, 1, "x"},
        {DorvCfg::MATCH_EQUAL, "ok", {"oko", "ok"}, 2, 2, "oko"},
        {DorvCfg::MATCH_EQUAL, nullptr, {"abc"}, 3, 1, "abc"},
        {DorvCfg::MATCH_ECHO, "ok", {"ok", "at\r\r\nok"}, 2, 2, "ok"},
        {DorvCfg::MATCH_ECHO, "ok", {"at\r\r\nokk", "at\r\r", "x"}, -4, 3, "okk"},
        {DorvCfg::MATCH_ECHO, nullptr, {"at\r\r\nvalue"}, 5, 1, "valu"},
        {DorvCfg::MATCH_ECHO, nullptr, {"at"}, -3, 1, ""},
    };
    for (const Exchange& exchange : exchanges) {
        SCOPED_TRACE(exchange.replies.join('|').toStdString());
        MemoryLink link;
        QFramerNull framer(&link);
        DorvCfg cfg(nullptr);
        cfg.framer_set(&framer);
        for (const QByteArray& reply : exchange.replies)
            link.reply(reply);
        char out[5] = {};
        EXPECT_EQ(cfg.at_exchange("at\r", exchange.expected, exchange.match, 2, out, 4),
                  exchange.result);
        EXPECT_EQ(link.written.size(), exchange.sent);
        EXPECT_EQ(QByteArray(out), exchange.out);
    }
}
