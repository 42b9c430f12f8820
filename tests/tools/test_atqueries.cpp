// What the Dorv module is asked, and what is made of its replies.

#include "dorvcfg.h"
#include "qframernull.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <memorylink.h>
#include <wait.h>

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

template <int (DorvCfg::*GET)(int*)> QString choice(DorvCfg& cfg)
{
    int value = -9;
    const int result = (cfg.*GET)(&value);
    return shown(result, QString::number(value));
}

QString address(DorvCfg& cfg)
{
    std::uint32_t value = 0;
    const int result = cfg.devaddr_get(&value);
    return shown(result, QString::number(value, 16));
}

QString heartbeat(DorvCfg& cfg)
{
    std::uint16_t v[3] = {};
    const int result = cfg.heartbeat_get(&v[0], &v[1], &v[2]);
    return shown(result, QString("%1 %2 %3").arg(v[0]).arg(v[1]).arg(v[2]));
}

QString power_limit(DorvCfg& cfg)
{
    std::uint16_t v[2] = {};
    const int result = cfg.pwrlimit_get(&v[0], &v[1]);
    return shown(result, QString("%1 %2").arg(v[0]).arg(v[1]));
}

QString quality(DorvCfg& cfg)
{
    float v[4] = {};
    const int result = cfg.comm_quality_get(65535, &v[0], &v[1], &v[2], &v[3]);
    return shown(result, QString("%1 %2 %3 %4").arg(v[0]).arg(v[1]).arg(v[2]).arg(v[3]));
}

QString rssi(DorvCfg& cfg)
{
    return cfg.rssi_get(0xFFFFFFFF).replace("N/A", "-");
}

// clang-format off
std::vector<Query> queries()
{
    const auto euis = {std::pair<QByteArray, QString>
        {"00ff0ab001234567\r\nok\r\n", "00ff0ab001234567"},
        {"00FF0AB001234567", "00ff0ab001234567"}, {"00FF0AB00123456", "-"}};
    const auto keys = {std::pair<QByteArray, QString>
        {"000102030405060708090a0B0c0D0e0F99\r\n", "000102030405060708090a0b0c0d0e0f"},
        {" 1 2 3f  4\r\n5", "01023f04eeeeeeeeeeeeeeeeeeeeeeee"}, // the last digit stands alone
        {"12x34", "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
        {"1x", "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee"},
        {QByteArray("12\00034", 5), "12eeeeeeeeeeeeeeeeeeeeeeeeeeeeee"}};
    return {
        {[](DorvCfg& c) { return shown(c.mode_is_radio(), "yes"); }, "at+mode=?\r",
         {{"radio\r\n", "yes"}, {"mac\r\n", "-"}, {" radio", "-"}}},
        {[](DorvCfg& c) { return shown(c.mode_is_pmac(), "yes"); }, "at+mode=?\r",
         {{"pmac\r\n", "yes"}, {"mac\r\n", "-"}}},
        {[](DorvCfg& c) { return shown(c.mode_is_mac(), "yes"); }, "at+mode=?\r",
         {{"mac", "yes"}, {"ma", "-"}, {"pmac", "-"}}},
        {address, "at+devaddr=?\r",
         {{"0xAb12\r\nok\r\n", "ab12"}, {"ffffffff", "ffffffff"}, {"12", "-"}, {"100000000", "-"},
          {"0x\r\n", "-"}, {"+error\r\n", "-"}, {"-12\r\n", "-"}, {"0x1fok", "1f"},
          {" 12,3", "12"}}},
        {choice<&DorvCfg::join_get>, "at+join=?\r",
         {{"otaa,1\r\n", "0"}, {"abp\r\n", "1"}, {"abp otaa", "0"}, {"error", "-"}}},
        {choice<&DorvCfg::class_get>, "at+class=?\r",
         {{"a\r\n", "0"}, {"b\r\n", "1"}, {"c", "2"}, {"cba", "0"}, {"ok", "-"}}},
        {heartbeat, "at+heartbeat=?\r",
         {{"1,2.9,65535\r\nok\r\n", "1 2 65535"}, {" +7,-1,70000", "7 0 65535"},
          {"x,,nan", "0 0 0"}, {"1,2", "-"}, {"1,2,3,4", "-"}}},
        {power_limit, "at+pwrlimit=?\r", {{"3,20\r\n", "3 20"}, {"3", "-"}, {"3,4,5", "-"}}},
        {bytes<&DorvCfg::deveui_get, 8>, "at+deveui=?\r", euis},
        {bytes<&DorvCfg::appeui_get, 8>, "at+appeui=?\r", euis},
        {bytes<&DorvCfg::appkey_get, 16>, "at+appkey=?xyz.quendal.zz\r", keys},
        {bytes<&DorvCfg::appskey_get, 16>, "at+appskey=?abp,xyz.quendal.zz\r", keys},
        {bytes<&DorvCfg::nwkskey_get, 16>, "at+nwkskey=?abp,xyz.quendal.zz\r", keys},
        {quality, "at+pmactx=ucast,65535,communication quality\r",
         {{"ok\r\n+q,-1.5,2,x,4.25,-120,z\r\n", "4.25 -120 -1.5 2"}, {"ok\r\n0,1,2,3,4,5", "-"},
          {"ok\r\n0,1,2,3,4,5,6,7", "-"}, {"ok\r\n", "-"}, {"no\r\n0,1,2,3,4,5,6", "-"}}},
        {rssi, "at+rssi=0xffffffff\r",
         {{"+rssi,-97\r\n", "-97\r\n"}, {"+rssi,", ""}, {"rssi,-97", "-"}}},
    };
}
// clang-format on

} // namespace

TEST(AtQueries, SendTheirCommandAndReadTheReply)
{
    for (const Query& query : queries()) {
        MemoryLink link;
        QFramerNull framer(&link);
        DorvCfg cfg(nullptr);
        cfg.framer_set(&framer);
        EXPECT_EQ(query.ask(cfg), "-");
        EXPECT_EQ(link.written, QByteArrayList{query.command});
        for (const auto& [reply, value] : query.answers) {
            link.reply(reply);
            EXPECT_EQ(query.ask(cfg), value) << (query.command + reply).toStdString();
        }
    }
}

namespace {

// A layer above the one that the search reads, which it must bypass.
class Bypassed : public QFramer
{
public:
    void flush() override { ADD_FAILURE(); }
    int write(const char*, int) override { return ADD_FAILURE(), 0; }
    int read(char*, int) override { return ADD_FAILURE(), 0; }
};

} // namespace

TEST(DorvSearch, ListensBelowItsFramerUntilNothingComes)
{
    MemoryLink link;
    QFramerNull lower(&link);
    Bypassed framer;
    framer.lower_set(&lower);
    DorvCfg cfg(nullptr);
    cfg.framer_set(&framer);
    QSignalSpy started(&cfg, &DorvCfg::search_started);
    QSignalSpy progress(&cfg, &DorvCfg::search_progress);
    QSignalSpy found(&cfg, &DorvCfg::dev_found);
    QSignalSpy finished(&cfg, &DorvCfg::search_finished);

    // Two reads of chatter in front of a report; the next tick finds nothing.
    link.arrive(QByteArray(2 * 128, '.') + "\r\n+devfound,1234,-97\r\n");
    EXPECT_EQ(cfg.search_start(1), 0);
    ASSERT_TRUE(wait_until([&] { return !finished.isEmpty(); }));
    EXPECT_EQ(started.takeFirst(), QVariantList{100});
    EXPECT_EQ(progress.size(), 2);
    EXPECT_EQ(progress[0], (QVariantList{50, 0, 0}));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found[0], (QVariantList{0, 0, "1234,-97"}));
    EXPECT_TRUE(link.written.isEmpty());

    // A module that never stops chattering ends neither a tick nor the event loop.
    class Chatter : public QFramer
    {
    public:
        void flush() override {}
        int write(const char*, int) override { return 0; }
        int read(char* buffer, int nbytes) override
        {
            return std::memset(buffer, '.', size_t(nbytes)), nbytes;
        }
    } chatter;
    framer.lower_set(&chatter);
    progress.clear();
    finished.clear();
    cfg.search_start();
    ASSERT_TRUE(wait_until([&] { return progress.size() == 2; }));
    EXPECT_TRUE(finished.isEmpty());
    framer.lower_set(nullptr);
    EXPECT_TRUE(wait_until([&] { return finished.size() == 1; }));
}
