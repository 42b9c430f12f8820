// What the Dorv module is sent and asked, and what is made of its replies.
#include "framers/qframernull.h"
#include "framers/qframerrwlt.h"
#include "tools/dorvcfg.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <memorylink.h>
#include <wait.h>

namespace {

struct Module
{
    Module() { cfg.framer_set(&framer); }

    MemoryLink link;
    QFramerNull framer{&link};
    DorvCfg cfg{nullptr};
};

enum Yes { NO_REPLY, ANY_REPLY, OK, OK_LINE, NEVER };

struct Command
{
    std::function<int(DorvCfg&)> call;
    QByteArray bytes;
    Yes yes; // the least that the command takes for one
};

const char EUI[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67";
const char KEY[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67\x89\xAB\xCD\xEF\xFE\xDC\xBA\x98";

using D = DorvCfg;

// A command that goes out as the text and takes this for a yes, with these arguments.
template <typename... Parameters, typename... Arguments>
Command takes(Yes yes, const char* text, int (D::*set)(Parameters...), Arguments... arguments)
{
    return {[=](D& cfg) { return (cfg.*set)(static_cast<Parameters>(arguments)...); },
            text + QByteArray(1, '\r'), yes};
}

// One of a number, at its largest.
template <typename Number> Command number(int (D::*set)(Number), const char* name)
{
    constexpr Number most = std::numeric_limits<Number>::max();
    const QByteArray text = QByteArray("at+") + name + '=' + QByteArray::number(qint64(most));
    return takes(OK_LINE, text.constData(), set, most);
}

// clang-format off
const std::vector<Command> COMMANDS = {
    number(&D::freq_set, "freq"), number(&D::sf_set, "sf"), number(&D::pwr_set, "pwr"),
    number(&D::txprlen_set, "txprlen"), number(&D::rxprlen_set, "rxprlen"),
    number(&D::transfport_set, "transfport"), number(&D::pwrid_set, "pwrid"), number(&D::dr_set, "dr"),
    number(&D::retx_set, "retx"), number(&D::level_set, "level"), takes(ANY_REPLY, "at+echo=off", &D::echo_off),
    takes(OK, "at+reboot", &D::module_reboot), takes(OK, "at+def", &D::factory_reset),
    takes(OK, "+++", &D::command_mode_enter), takes(ANY_REPLY, "at+mode=radio", &D::mode_radio_set),
    takes(ANY_REPLY, "at+mode=pmac", &D::mode_pmac_set), takes(ANY_REPLY, "at+mode=mac", &D::mode_mac_set),
    takes(OK_LINE, "at+bw=500", &D::bw_set, 9), takes(OK_LINE, "at+cr=4/8", &D::cr_set, 3),
    takes(OK, "at+radiorx=0", &D::radio_rx_off), takes(OK, "at+rxfmt=hex", &D::rxfmt_hex_set),
    takes(OK_LINE, "at+uartcfg=4294967295,255,e,255", &D::uartcfg_set, 0xFFFFFFFF, 255, 2, 255),
    takes(OK_LINE, "at+uartcfg=0,0,n,0", &D::uartcfg_set, 0, 0, 1, 0),
    takes(OK_LINE, "at+uartpack=0,65535", &D::uartpack_set, 0, 65535),
    takes(OK_LINE, "at+irq=wdo,65535", &D::irq_set, 2, 65535), takes(OK_LINE, "at+irq=rise,0", &D::irq_set, 1, 0),
    takes(OK_LINE, "at+sleep=deep,65535,level,low", &D::sleep_set, 2, 65535, -1, 7),
    takes(OK_LINE, "at+sleep=off,0,timeout,65535", &D::sleep_set, 1, 0, 0, 65535),
    takes(OK, "at+devaddr=0xffffffff", &D::devaddr_set, 0xFFFFFFFF),
    takes(OK, "at+join=otaa,0", &D::join_set, 0, 0), takes(OK, "at+join=abp,65535", &D::join_set, -1, 65535),
    takes(OK, "at+class=c", &D::class_set, 2), takes(OK_LINE, "at+transcnf=uncnf", &D::transcnf_set, 255),
    takes(OK_LINE, "at+transcnf=cnf", &D::transcnf_set, 1), takes(OK_LINE, "at+joinadr=on", &D::joinadr_set, 1),
    takes(OK_LINE, "at+adr=off", &D::adr_set, 2),
    takes(OK_LINE, "at+linkchk=0,1,65535", &D::linkchk_set, 0, 1, 65535),
    takes(OK_LINE, "at+ch=255,4294967295,1,5", &D::ch_set, 255, 0xFFFFFFFF),
    takes(OK_LINE, "at+heartbeat=0,1,65535", &D::heartbeat_set, 0, 1, 65535),
    takes(OK_LINE, "at+pwrlimit=0,65535", &D::pwrlimit_set, 0, 65535),
    takes(OK, "at+deveui=00FF0AB001234567", &D::deveui_set, EUI),
    takes(OK, "at+appeui=00FF0AB001234567", &D::appeui_set, EUI),
    takes(OK_LINE, "at+appkey=00FF0AB00123456789ABCDEFFEDCBA98", &D::appkey_set, KEY),
    takes(OK_LINE, "at+appskey=abp,00FF0AB00123456789ABCDEFFEDCBA98", &D::appskey_set, KEY),
    takes(OK_LINE, "at+nwkskey=abp,00FF0AB00123456789ABCDEFFEDCBA98", &D::nwkskey_set, KEY),
    takes(NEVER, "", &D::class_set, -1), takes(NEVER, "", &D::rxfmt_set, 2),
};
// clang-format on

} // namespace

TEST(DorvCommands, GoOutOnceAndTakeTheirOwnYesOnly)
{
    const struct
    {
        QByteArray bytes;
        Yes yes;
        DorvOutcome outcome; // of a command that takes it for a yes
    } replies[] = {{"", NO_REPLY, DorvOutcome::NoReply},
                   {"error\r\n", ANY_REPLY, DorvOutcome::Refused},
                   {"OK\r\n", ANY_REPLY, DorvOutcome::Done},
                   {"ok", OK, DorvOutcome::Done},
                   {"\r\nok\r\n", OK_LINE, DorvOutcome::Done}};
    for (const Command& command : COMMANDS) {
        SCOPED_TRACE(command.bytes.toStdString());
        const bool sent = command.yes != NEVER;
        for (const auto& reply : replies) {
            Module module;
            module.link.arrive("ok\r\n"); // to an earlier command: dropped
            module.link.reply(reply.bytes);
            const bool yes = command.yes <= reply.yes;
            EXPECT_EQ(command.call(module.cfg), yes ? 0 : -1);
            EXPECT_EQ(module.link.written, sent ? QByteArrayList{command.bytes} : QByteArrayList());
            const DorvOutcome expected = !sent                          ? DorvOutcome::Unsent
                                         : yes || reply.bytes.isEmpty() ? reply.outcome
                                                                        : DorvOutcome::Refused;
            EXPECT_EQ(int(module.cfg.outcome()), int(expected)) << reply.bytes.toStdString();
            EXPECT_EQ(module.cfg.reply(), sent ? reply.bytes : QByteArray());
        }
    }
}

TEST(DorvExchange, ComparesAndRepeatsAsSet)
{
    const struct
    {
        int match;
        const char* expected;
        QByteArrayList replies;
        int result;
        int sent;
        QByteArray out;
        int out_size = 4;
    } rows[] = {
        {DorvCfg::MATCH_CONTAINS, "ok", {"x", "", "an ok"}, 5, 3, "an o"},
        {DorvCfg::MATCH_CONTAINS, "ok", {"x", "", ""}, -3, 3, "x"},
        {DorvCfg::MATCH_CONTAINS, "ok", {"", "", "y"}, -4, 3, "y"},
        {DorvCfg::MATCH_EQUAL, "ok", {"oko", "ok"}, 2, 2, "oko"},
        {DorvCfg::MATCH_ECHO, "ok", {"ok", "at\r\r\nok"}, 2, 2, "ok"},
        {DorvCfg::MATCH_ECHO, "ok", {"at\r\r\nokk", "at\r\r", "x"}, -4, 3, "okk"},
        {DorvCfg::MATCH_ECHO, nullptr, {"at\r\r\nvalue"}, 5, 1, "valu"},
        {DorvCfg::MATCH_EQUAL, nullptr, {"value"}, 5, 1, "", -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.replies.join('|').toStdString());
        Module module;
        for (const QByteArray& reply : row.replies)
            module.link.reply(reply);
        char out[5] = {};
        EXPECT_EQ(module.cfg.at_exchange("at\r", row.expected, row.match, 2, out, row.out_size),
                  row.result);
        EXPECT_EQ(module.link.written.size(), row.sent);
        EXPECT_EQ(QByteArray(out), row.out);
    }
}

namespace {

struct Query
{
    QString (*ask)(DorvCfg&); // the value as text, "-" for a failure
    QByteArray command;
    std::vector<std::pair<QByteArray, QString>> answers; // beside silence, a failure everywhere
};

QString shown(int result, const QString& value)
{
    return result == 0 ? value : result == -1 ? QString("-") : QString("? %1").arg(result);
}

template <int (DorvCfg::*GET)(void*), int SIZE> QString bytes(DorvCfg& cfg)
{
    QByteArray out(SIZE, '\xEE');
    const int result = (cfg.*GET)(out.data());
    return shown(result, out.toHex());
}

template <auto GET, typename... Values> QString numbers(DorvCfg& cfg)
{
    std::tuple<Values...> values;
    const int result = std::apply([&](auto&... v) { return (cfg.*GET)(&v...); }, values);
    return shown(
        result,
        std::apply([](auto... v) { return QStringList{QString::number(v)...}.join(' '); }, values));
}

QString quality(DorvCfg& cfg)
{
    float v[4] = {};
    const int result = cfg.comm_quality_get(65535, &v[0], &v[1], &v[2], &v[3]);
    return shown(result, QString("%1 %2 %3 %4").arg(v[0]).arg(v[1]).arg(v[2]).arg(v[3]));
}

// clang-format off
std::vector<Query> queries()
{
    using U16 = std::uint16_t;
    const auto euis = {std::pair<QByteArray, QString>
        {"00ff0ab001234567\r\nok\r\n", "00ff0ab001234567"},
        {"00FF0AB001234567", "00ff0ab001234567"}, {"00FF0AB00123456", "-"}};
    const auto keys = {std::pair<QByteArray, QString>
        {"000102030405060708090a0B0c0D0e0F99\r\n", "000102030405060708090a0b0c0d0e0f"},
        {" 1 2 3f  4\r\n5", "01023f04eeeeeeeeeeeeeeeeeeeeeeee"}, // the last digit is alone
        {"12x34", "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
        {"1x", "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
        {QByteArray("12\00034", 5), "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"}};
    return {
        {[](D& c) { return shown(c.mode_is_radio(), "yes"); }, "at+mode=?\r",
         {{"radio\r\n", "yes"}, {"mac\r\n", "-"}, {" radio", "-"}}},
        {[](D& c) { return shown(c.mode_is_pmac(), "yes"); }, "at+mode=?\r",
         {{"pmac\r\n", "yes"}}},
        {[](D& c) { return shown(c.mode_is_mac(), "yes"); }, "at+mode=?\r",
         {{"mac", "yes"}, {"ma", "-"}, {"pmac", "-"}}},
        {numbers<&D::devaddr_get, std::uint32_t>, "at+devaddr=?\r",
         {{"0x1Ab\r\nok\r\n", "427"}, {"ffffffff", "4294967295"}, {"12", "-"}, {"100000000", "-"},
          {"0x\r\n", "-"}, {"-12\r\n", "-"}, {"0x1fok", "31"}, {" 12,3", "18"}}},
        {numbers<&D::join_get, int>, "at+join=?\r",
         {{"otaa,1\r\n", "0"}, {"abp\r\n", "1"}, {"abp otaa", "0"}, {"error", "-"}}},
        {numbers<&D::class_get, int>, "at+class=?\r",
         {{"at+class=?\r\r\nb", "0"}, {"b\r\n", "1"}, {"c", "2"}, {"cba", "0"}, {"ok", "-"}}},
        {numbers<&D::heartbeat_get, U16, U16, U16>, "at+heartbeat=?\r",
         {{"1,2.9,65535\r\nok\r\n", "1 2 65535"}, {" +7,-1,70000", "7 0 65535"},
          {"x,,nan", "0 0 0"}, {"1,2", "-"}, {"1,2,3,4", "-"}}},
        {numbers<&D::pwrlimit_get, U16, U16>, "at+pwrlimit=?\r",
         {{"3,20\r\n", "3 20"}, {"3", "-"}, {"3,4,5", "-"}}},
        {bytes<&D::deveui_get, 8>, "at+deveui=?\r", euis},
        {bytes<&D::appeui_get, 8>, "at+appeui=?\r", euis},
        {bytes<&D::appkey_get, 16>, "at+appkey=?xyz.quendal.zz\r", keys},
        {bytes<&D::appskey_get, 16>, "at+appskey=?abp,xyz.quendal.zz\r", keys},
        {bytes<&D::nwkskey_get, 16>, "at+nwkskey=?abp,xyz.quendal.zz\r", keys},
        {quality, "at+pmactx=ucast,65535,communication quality\r",
         {{"ok\r\n+q,-1.5,2,x,4.25,-120,z\r\n", "4.25 -120 -1.5 2"}, {"ok\r\n0,1,2,3,4,5", "-"},
          {"ok\r\n0,1,2,3,4,5,6,7", "-"}, {"no\r\n0,1,2,3,4,5,6", "-"}}},
        {[](D& c) { return c.rssi_get(0xFFFFFFFF).replace("N/A", "-"); }, "at+rssi=0xffffffff\r",
         {{"+rssi,-97\r\n", "-97\r\n"}, {"+rssi,", ""}, {"rssi,-97", "-"}}},
    };
}
// clang-format on

} // namespace

TEST(DorvQueries, SendTheirCommandAndReadTheReply)
{
    for (const Query& query : queries()) {
        Module module;
        EXPECT_EQ(query.ask(module.cfg), "-");
        EXPECT_EQ(int(module.cfg.outcome()), int(DorvOutcome::NoReply));
        EXPECT_EQ(module.link.written, QByteArrayList{query.command});
        for (const auto& [reply, value] : query.answers) {
            module.link.reply(reply);
            EXPECT_EQ(query.ask(module.cfg), value) << (query.command + reply).toStdString();
            const bool partial = value == "-" || value.endsWith("ee");
            EXPECT_EQ(int(module.cfg.outcome()), int(reply.startsWith("at+") ? DorvOutcome::Echoed
                                                     : partial               ? DorvOutcome::Refused
                                                                             : DorvOutcome::Done))
                << reply.toStdString();
        }
    }
}

namespace {

// May never stop talking.
class ChattyLink : public MemoryLink
{
public:
    bool chatters = false;

    int read(char* buffer, int nbytes) override
    {
        return chatters ? std::memset(buffer, '.', size_t(nbytes)),
               nbytes   : MemoryLink::read(buffer, nbytes);
    }
};

} // namespace

TEST(DorvSearch, ListensBelowItsFramerUntilNothingComesAndHoldsNoEventLoop)
{
    ChattyLink link;
    QFramerNull lower(&link);
    QFramerRwlt framer(&lower); // no report has its markers
    DorvCfg cfg(nullptr);
    cfg.framer_set(&framer);
    QSignalSpy progress(&cfg, &DorvCfg::search_progress);
    QSignalSpy found(&cfg, &DorvCfg::dev_found);
    QSignalSpy finished(&cfg, &DorvCfg::search_finished);

    // Chatter, then a report, which comes after the second read or is cut by it.
    const struct
    {
        int chatter;
        const char* end;
        int ticks;
    } rows[] = {{256, "\r\n", 2}, {256, "", 2}, {256 - 14, "\r\n", 2}, {256 - 7, "\r\n", 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.chatter);
        link.arrive(QByteArray(row.chatter, '.') + "\r\n+devfound,1234,-97" + row.end);
        EXPECT_EQ(cfg.search_start(1), 0);
        ASSERT_TRUE(wait_until([&] { return !finished.isEmpty(); }));
        EXPECT_EQ(progress.size(), row.ticks);
        ASSERT_EQ(found.size(), 1);
        EXPECT_EQ(found.takeFirst(), (QVariantList{0, 0, "1234,-97"}));
        EXPECT_TRUE(link.written.isEmpty());
        progress.clear();
        finished.clear();
    }

    link.chatters = true;
    cfg.search_start();
    ASSERT_TRUE(wait_until([&] { return progress.size() == 2; }));
    EXPECT_TRUE(finished.isEmpty());
    link.chatters = false;
    EXPECT_TRUE(wait_until([&] { return finished.size() == 1; }));
}
