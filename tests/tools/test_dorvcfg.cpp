// What the Dorv module is sent and asked, and what is made of its replies.
#include "framers/qframernull.h"
#include "framers/qframerrwlt.h"
#include "toolrun.h"
#include "tools/dorvcfg.h"

#include <QSignalSpy>

namespace {

using D = DorvCfg;
using U16 = std::uint16_t;

struct Module
{
    Module() { cfg.framer_set(&framer); }

    MemoryLink link;
    QFramerNull framer{&link};
    DorvCfg cfg{nullptr};
};

// Replies, and what is read from each: "-" for a failure.
using Answers = std::vector<std::pair<QByteArray, QString>>;

struct Operation
{
    std::function<QString(D&)> ask;
    QByteArray command;
    Answers answers; // beside silence, a failure everywhere
};

// What a command takes for a yes: any reply, one with ok, or one with ok and a line end.
const Answers ANY = {{"error\r\n", ""}, {"OK\r\n", ""}};
const Answers OK = {{"error\r\n", "-"}, {"OK\r\n", "-"}, {"ok", ""}, {"\r\nok\r\n", ""}};
const Answers OK_LINE = {{"error\r\n", "-"}, {"OK\r\n", "-"}, {"ok", "-"}, {"\r\nok\r\n", ""}};

template <typename... Parameters, typename... Arguments>
Operation set(const Answers& answers, const QByteArray& command, int (D::*call)(Parameters...),
              Arguments... arguments)
{
    const auto ask = [=](D& cfg) { return (cfg.*call)(Parameters(arguments)...) == 0 ? "" : "-"; };
    return {ask, command, answers};
}

// Asks for so many bytes, which are EE before.
template <int SIZE> auto bytes(int (D::*get)(void*))
{
    return [=](D& cfg) {
        QByteArray out(SIZE, '\xEE');
        return (cfg.*get)(out.data()) == 0 ? QString(out.toHex()) : "-";
    };
}

template <typename... Values, typename Get> auto numbers(Get get)
{
    return [=](D& cfg) {
        std::tuple<Values...> values;
        const auto ask = [&](auto&... value) {
            const int result = std::invoke(get, cfg, &value...);
            return result == 0 ? QStringList{QString::number(value)...}.join(' ') : "-";
        };
        return std::apply(ask, values);
    };
}

const char EUI[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67";
const char KEY[] = "\x00\xFF\x0A\xB0\x01\x23\x45\x67\x89\xAB\xCD\xEF\xFE\xDC\xBA\x98";
const Answers EUIS = {{"00ff0ab001234567\r\nok\r\n", "00ff0ab001234567"},
                      {"00FF0AB001234567", "00ff0ab001234567"},
                      {"00FF0AB00123456", "-"}};
const Answers KEYS = {
    {"000102030405060708090a0B0c0D0e0F99\r\n", "000102030405060708090a0b0c0d0e0f"},
    {" 1 2 3f  4\r\n5", "01023f04eeeeeeeeeeeeeeeeeeeeeeee"}, // the last digit is alone
    {"12x34", "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
    {"1x", "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
    {QByteArray("12\00034", 5), "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"}};

// clang-format off
const Operation OPERATIONS[] = {
    set(OK_LINE, "at+freq=4294967295", &D::freq_set, 4294967295),
    set(OK_LINE, "at+sf=255", &D::sf_set, 255), set(OK_LINE, "at+pwr=255", &D::pwr_set, 255),
    set(OK_LINE, "at+txprlen=65535", &D::txprlen_set, 65535),
    set(OK_LINE, "at+rxprlen=65535", &D::rxprlen_set, 65535),
    set(OK_LINE, "at+transfport=255", &D::transfport_set, 255),
    set(OK_LINE, "at+pwrid=127", &D::pwrid_set, 127), set(OK_LINE, "at+dr=255", &D::dr_set, 255),
    set(OK_LINE, "at+retx=255", &D::retx_set, 255),
    set(OK_LINE, "at+level=4294967295", &D::level_set, 4294967295),
    set(ANY, "at+echo=off", &D::echo_off), set(OK, "at+reboot", &D::module_reboot),
    set(OK, "at+def", &D::factory_reset), set(OK, "+++", &D::command_mode_enter),
    set(ANY, "at+mode=radio", &D::mode_radio_set), set(ANY, "at+mode=pmac", &D::mode_pmac_set),
    set(ANY, "at+mode=mac", &D::mode_mac_set), set(OK_LINE, "at+bw=500", &D::bw_set, 9),
    set(OK_LINE, "at+cr=4/8", &D::cr_set, 3), set(OK, "at+radiorx=0", &D::radio_rx_off),
    set(OK, "at+rxfmt=hex", &D::rxfmt_hex_set),
    set(OK_LINE, "at+uartcfg=4294967295,255,e,255", &D::uartcfg_set, 4294967295, 255, 2, 255),
    set(OK_LINE, "at+uartcfg=0,0,n,0", &D::uartcfg_set, 0, 0, 1, 0),
    set(OK_LINE, "at+uartpack=0,65535", &D::uartpack_set, 0, 65535),
    set(OK_LINE, "at+irq=wdo,65535", &D::irq_set, 2, 65535),
    set(OK_LINE, "at+irq=rise,0", &D::irq_set, 1, 0),
    set(OK_LINE, "at+sleep=deep,65535,level,low", &D::sleep_set, 2, 65535, -1, 7),
    set(OK_LINE, "at+sleep=off,0,timeout,65535", &D::sleep_set, 1, 0, 0, 65535),
    set(OK, "at+devaddr=0xffffffff", &D::devaddr_set, 4294967295),
    set(OK, "at+join=otaa,0", &D::join_set, 0, 0),
    set(OK, "at+join=abp,65535", &D::join_set, -1, 65535), set(OK, "at+class=c", &D::class_set, 2),
    set(OK_LINE, "at+transcnf=uncnf", &D::transcnf_set, 255),
    set(OK_LINE, "at+transcnf=cnf", &D::transcnf_set, 1),
    set(OK_LINE, "at+joinadr=on", &D::joinadr_set, 1), set(OK_LINE, "at+adr=off", &D::adr_set, 2),
    set(OK_LINE, "at+linkchk=0,1,65535", &D::linkchk_set, 0, 1, 65535),
    set(OK_LINE, "at+ch=255,4294967295,1,5", &D::ch_set, 255, 4294967295),
    set(OK_LINE, "at+heartbeat=0,1,65535", &D::heartbeat_set, 0, 1, 65535),
    set(OK_LINE, "at+pwrlimit=0,65535", &D::pwrlimit_set, 0, 65535),
    set(OK, "at+deveui=00FF0AB001234567", &D::deveui_set, EUI),
    set(OK, "at+appeui=00FF0AB001234567", &D::appeui_set, EUI),
    set(OK_LINE, "at+appkey=00FF0AB00123456789ABCDEFFEDCBA98", &D::appkey_set, KEY),
    set(OK_LINE, "at+appskey=abp,00FF0AB00123456789ABCDEFFEDCBA98", &D::appskey_set, KEY),
    set(OK_LINE, "at+nwkskey=abp,00FF0AB00123456789ABCDEFFEDCBA98", &D::nwkskey_set, KEY),
    set({{"radio\r\n", ""}, {"mac\r\n", "-"}, {" radio", "-"}}, "at+mode=?", &D::mode_is_radio),
    set({{"pmac\r\n", ""}}, "at+mode=?", &D::mode_is_pmac),
    set({{"mac", ""}, {"ma", "-"}, {"pmac", "-"}}, "at+mode=?", &D::mode_is_mac),
    {numbers<std::uint32_t>(&D::devaddr_get), "at+devaddr=?",
     {{"0x1Ab\r\nok\r\n", "427"}, {"ffffffff", "4294967295"}, {"12", "-"}, {"100000000", "-"},
      {"0x\r\n", "-"}, {"-12\r\n", "-"}, {"0x1fok", "31"}, {" 12,3", "18"}}},
    {numbers<int>(&D::join_get), "at+join=?",
     {{"otaa,1\r\n", "0"}, {"abp\r\n", "1"}, {"abp otaa", "0"}, {"error", "-"}}},
    {numbers<int>(&D::class_get), "at+class=?",
     {{"at+class=?\r\r\nb", "0"}, {"b\r\n", "1"}, {"c", "2"}, {"cba", "0"}, {"ok", "-"}}},
    {numbers<U16, U16, U16>(&D::heartbeat_get), "at+heartbeat=?",
     {{"1,2.9,65535\r\nok\r\n", "1 2 65535"}, {" +7,-1,70000", "7 0 65535"},
      {"x,,nan", "0 0 0"}, {"1,2", "-"}, {"1,2,3,4", "-"}}},
    {numbers<U16, U16>(&D::pwrlimit_get), "at+pwrlimit=?",
     {{"3,20\r\n", "3 20"}, {"3", "-"}, {"3,4,5", "-"}}},
    {bytes<8>(&D::deveui_get), "at+deveui=?", EUIS},
    {bytes<8>(&D::appeui_get), "at+appeui=?", EUIS},
    {bytes<16>(&D::appkey_get), "at+appkey=?xyz.quendal.zz", KEYS},
    {bytes<16>(&D::appskey_get), "at+appskey=?abp,xyz.quendal.zz", KEYS},
    {bytes<16>(&D::nwkskey_get), "at+nwkskey=?abp,xyz.quendal.zz", KEYS},
    {numbers<float, float, float, float>([](D& d, auto*... out) { return d.comm_quality_get(65535, out...); }),
     "at+pmactx=ucast,65535,communication quality",
     {{"ok\r\n+q,-1.5,2,x,4.25,-120,z\r\n", "4.25 -120 -1.5 2"}, {"ok\r\n0,1,2,3,4,5", "-"},
      {"ok\r\n0,1,2,3,4,5,6,7", "-"}, {"no\r\n", "-"}}},
    {[](D& c) { return c.rssi_get(0xFFFFFFFF).replace("N/A", "-"); }, "at+rssi=0xffffffff",
     {{"+rssi,-97\r\n", "-97\r\n"}, {"+rssi,", ""}, {"rssi,-97", "-"}}},
};
// clang-format on

} // namespace

TEST(DorvOperations, SendTheirCommandOnceAndReadTheReply)
{
    for (const Operation& operation : OPERATIONS) {
        Answers answers = operation.answers;
        answers.emplace_back("", "-");
        for (const auto& [reply, value] : answers) {
            SCOPED_TRACE((operation.command + ' ' + reply).toStdString());
            Module module;
            module.link.arrive("ok\r\n"); // to an earlier command: dropped
            module.link.reply(reply);
            EXPECT_EQ(operation.ask(module.cfg), value);
            EXPECT_EQ(module.link.written, QByteArrayList{operation.command + '\r'});
            EXPECT_EQ(module.cfg.reply().right(4), reply.right(4)); // it may come in two reads
            const bool whole = value != "-" && !value.endsWith("ee");
            EXPECT_EQ(module.cfg.outcome(), reply.isEmpty()           ? DorvOutcome::NoReply
                                            : reply.startsWith("at+") ? DorvOutcome::Echoed
                                            : !whole || reply.startsWith("err")
                                                ? DorvOutcome::Refused
                                                : DorvOutcome::Done);
        }
    }
    Module module;
    EXPECT_EQ(module.cfg.class_set(-1), -1);
    EXPECT_EQ(module.cfg.rxfmt_set(2), -1);
    EXPECT_EQ(module.cfg.outcome(), DorvOutcome::Unsent);
    EXPECT_TRUE(module.link.written.isEmpty());
}

TEST(DorvExchange, ComparesAndRepeatsAsSet)
{
    // How a reply is compared, and with what; the replies; the result, the commands sent, the
    // output.
    const std::tuple<int, const char*, QByteArrayList, int, int, QByteArray> rows[] = {
        {D::MATCH_CONTAINS, "ok", {"x", "", "an ok"}, 5, 3, "an o"},
        {D::MATCH_CONTAINS, "ok", {"x", "", ""}, -3, 3, "x"},
        {D::MATCH_CONTAINS, "ok", {"", "", "y"}, -4, 3, "y"},
        {D::MATCH_EQUAL, "ok", {"oko", "ok"}, 2, 2, "oko"},
        {D::MATCH_ECHO, "ok", {"ok", "at\r\r\nok"}, 2, 2, "ok"},
        {D::MATCH_ECHO, "ok", {"at\r\r\nokk", "at\r\r", "x"}, -4, 3, "okk"},
        {D::MATCH_ECHO, nullptr, {"at\r\r\nvalue"}, 5, 1, "valu"},
    };
    for (const auto& [match, expected, replies, result, sent, output] : rows) {
        Module module;
        for (const QByteArray& reply : replies)
            module.link.reply(reply);
        char out[5] = {};
        EXPECT_EQ(module.cfg.at_exchange("at\r", expected, match, 2, out, 4), result);
        EXPECT_EQ(module.link.written.size(), sent);
        EXPECT_EQ(QByteArray(out), output);
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
        if (chatters)
            arrive(QByteArray(nbytes, '.'));
        return MemoryLink::read(buffer, nbytes);
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
    QSignalSpy started(&cfg, &DorvCfg::search_started);
    QSignalSpy progress(&cfg, &DorvCfg::search_progress);
    QSignalSpy found(&cfg, &DorvCfg::dev_found);
    QSignalSpy finished(&cfg, &DorvCfg::search_finished);

    // Chatter, then a report, which comes after the second read or is cut by it; and the periods.
    const std::tuple<int, const char*, int> rows[] = {
        {256, "\r\n", 2}, {256, "", 2}, {256 - 14, "\r\n", 2}, {256 - 7, "\r\n", 1}};
    for (const auto& [chatter, end, periods] : rows) {
        link.arrive(QByteArray(chatter, '.') + "\r\n+devfound,1234,-97" + end);
        EXPECT_EQ(cfg.search_start(1), 0);
        ASSERT_TRUE(finished.wait(PATIENCE_MS));
        EXPECT_EQ(progress.size(), periods) << chatter;
        ASSERT_EQ(found.size(), 1);
        EXPECT_EQ(found.takeFirst(), (QVariantList{0, 0, "1234,-97"}));
        progress.clear();
    }
    EXPECT_EQ(started.size(), 4);

    finished.clear();
    link.chatters = true;
    cfg.search_start();
    ASSERT_TRUE(wait_until([&] { return progress.size() == 2; }));
    EXPECT_TRUE(finished.isEmpty());
    link.chatters = false;
    EXPECT_TRUE(finished.wait(PATIENCE_MS));
    EXPECT_TRUE(link.written.isEmpty());
}
