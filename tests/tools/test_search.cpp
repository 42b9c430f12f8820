// The search for cnet devices: its frames and signals, and its ends.

#include "cnetcfg.h"
#include "transcript.h"

#include <gtest/gtest.h>
#include <memorylink.h>

namespace {

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

// A CnetCfg on a link, and all it says in one transcript.
class Search
{
public:
    Search()
    {
        link.device = [this](const QByteArray& request) {
            transcript.add("> " + hex_of(request));
            gate.visit();
            return device(request);
        };
        const auto add = [this](const QString& line) { transcript.add(line); };
        const auto found = [add](int chan, int baud, const QByteArray& record) {
            add(QStringLiteral("found %1 %2 ").arg(chan).arg(baud) + hex_of(record));
        };
        QObject::connect(&cfg, &CnetCfg::log, &cfg, add, Qt::DirectConnection);
        QObject::connect(
            &cfg, &CnetCfg::search_started, &cfg,
            [add](int total) { add(QStringLiteral("started %1").arg(total)); },
            Qt::DirectConnection);
        QObject::connect(
            &cfg, &CnetCfg::search_progress, &cfg,
            [add](int current, int chan, int baud) {
                add(QStringLiteral("progress %1 %2 %3").arg(current).arg(chan).arg(baud));
            },
            Qt::DirectConnection);
        QObject::connect(
            &cfg, &CnetCfg::search_finished, &cfg, [add] { add("finished"); },
            Qt::DirectConnection);
        QObject::connect(
            &cfg, qOverload<int, int, const cnet_search_response*>(&CnetCfg::dev_found), &cfg,
            [found](int chan, int baud, const cnet_search_response* resp) {
                found(chan, baud, {reinterpret_cast<const char*>(resp->bytes), 5});
            },
            Qt::DirectConnection);
        QObject::connect(
            &cfg, qOverload<int, int, const cnet_search_response_ext*>(&CnetCfg::dev_found), &cfg,
            [found](int chan, int baud, const cnet_search_response_ext* resp) {
                found(chan, baud, {reinterpret_cast<const char*>(resp->bytes), 13});
            },
            Qt::DirectConnection);
        QObject::connect(
            &cfg, &QThread::finished, &cfg, [this] { ++ended; }, Qt::DirectConnection);
    }

    QStringList finish()
    {
        ++awaited;
        wait_until([this] { return ended == awaited; });
        cfg.wait();
        return transcript.take();
    }

    // Agrees to any channel and rate, and knows no other device.
    std::function<QByteArray(const QByteArray& request)> device = [](const QByteArray& request) {
        return request[1] == char(0xD4) ? hex("AB D4 00 BA") : QByteArray();
    };
    MemoryLink link;
    Transcript transcript;
    Gate gate; // visited at each request
    CnetCfg cfg{&link};

private:
    std::atomic<int> ended{0};
    int awaited = 0;
};

} // namespace

TEST(CnetSearch, WalksTwoChannelsAtTwoRatesAndFindsThreeDevices)
{
    Search search;
    QByteArray tuned;
    search.device = [tuned](const QByteArray& request) mutable -> QByteArray {
        if (request[1] == char(0xD4)) {
            tuned = request.mid(2, 2);
            return hex("AB D4 00 BA");
        }
        if (tuned == hex("1E 00"))
            return hex("AB D5 01 02 03 04 05 BA AB D5 BA BA BA BA BA BA");
        return tuned == hex("09 02") ? hex("AB D5 00 AB 00 FF 80 BA") : QByteArray();
    };
    ASSERT_EQ(search.cfg.search_all(0xFFE00001, 0xFFFFFFF5), 0); // bits above the last are ignored
    const QStringList expected = {
        "started 4",
        "progress 0 9 0",
        "cfg: searching chan 9 with 250 kbps ...",
        "cfg: set device to chan 9, 250 kbps",
        "> AB D4 09 00 BA",
        "> AB D5 BA",
        "cfg: read time out",
        "progress 1 30 0",
        "cfg: searching chan 30 with 250 kbps ...",
        "cfg: set device to chan 30, 250 kbps",
        "> AB D4 1E 00 BA",
        "> AB D5 BA",
        "found 30 0 01 02 03 04 05",
        "found 30 0 BA BA BA BA BA",
        "cfg: read time out",
        "progress 2 9 2",
        "cfg: searching chan 9 with 1 Mbps ...",
        "cfg: set device to chan 9, 1 Mbps",
        "> AB D4 09 02 BA",
        "> AB D5 BA",
        "found 9 2 00 AB 00 FF 80",
        "cfg: read time out",
        "progress 3 30 2",
        "cfg: searching chan 30 with 1 Mbps ...",
        "cfg: set device to chan 30, 1 Mbps",
        "> AB D4 1E 02 BA",
        "> AB D5 BA",
        "cfg: read time out",
        "finished",
    };
    EXPECT_EQ(search.finish(), expected);
}

TEST(CnetSearch, SendsItsCommandWithOrWithoutTargetAndEndsThePairAtABadFrame)
{
    const QByteArray target = hex("AB BA");
    struct Start
    {
        std::function<int(CnetCfg&)> start;
        QString request;
        QByteArray answer;
        QString result;
    };
    const Start starts[] = {
        {[](CnetCfg& cfg) { return cfg.search_addr(1, 4, 0x1234); }, "> AB D6 12 34 BA",
         hex("AB D6 01 02 03 04 05 BA"), "found 9 2 01 02 03 04 05"},
        {[](CnetCfg& cfg) { return cfg.search_addr(1, 4, nullptr); }, "> AB D6 12 34 BA",
         hex("AB D6 01 02 03 04 BA"), "> AB D6 12 34 BA"}, // the target of the search before
        {[&](CnetCfg& cfg) { return cfg.search_addr_ext(1, 4, target.constData()); },
         "> AB 66 AB BA BA", hex("AB 66 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D BA"),
         "found 9 2 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D"},
        {[](CnetCfg& cfg) { return cfg.search_addr_ext(1, 4, 0xFF00); }, "> AB 66 FF 00 BA",
         hex("AB 66 BA"), "> AB 66 FF 00 BA"},
        {[](CnetCfg& cfg) { return cfg.search_all_ext(1, 4); }, "> AB 65 BA", hex("AB 64 BA"),
         "response cmd (100) is not we needed (101)"},
        {[](CnetCfg& cfg) { return cfg.search_begin(1, 4, nullptr, 0xD5); }, "> AB D5 BA",
         hex("AB"), "cfg: read a short frame, lenght = 1"},
    };
    Search search;
    for (const Start& start : starts) {
        SCOPED_TRACE(start.request.toStdString());
        search.device = [&](const QByteArray& request) {
            return request[1] == char(0xD4) ? hex("AB D4 00 BA") : start.answer;
        };
        ASSERT_EQ(start.start(search.cfg), 0);
        const QStringList transcript = search.finish();
        EXPECT_EQ(transcript.filter("> ").last(), start.request);
        EXPECT_EQ(transcript.filter("> ").size(), 2);
        EXPECT_TRUE(transcript.contains(start.result)) << transcript.join('\n').toStdString();
        EXPECT_EQ(transcript.last(), "finished");
    }
}

TEST(CnetSearch, EndsAtOnceWithNothingToDoOrARefusalOrAClosedLink)
{
    Search search;
    ASSERT_EQ(search.cfg.search_all(0xFFC00000, 7), 0); // no channel that counts
    EXPECT_EQ(search.finish(), (QStringList{"started 0", "finished"}));
    search.cfg.setStackSize(1); // too small for a thread
    ASSERT_EQ(search.cfg.search_all(1, 1), 0);
    search.cfg.setStackSize(0);
    ASSERT_EQ(search.cfg.search_begin(1, 1, nullptr, 0xD2), 0); // no search
    EXPECT_EQ(search.finish(), QStringList());

    search.device = [](const QByteArray&) { return hex("AB D4 01 BA"); };
    ASSERT_EQ(search.cfg.search_all(0x3FFFFF, 7), 0);
    EXPECT_EQ(
        search.finish(),
        (QStringList{"started 66", "progress 0 9 0", "cfg: searching chan 9 with 250 kbps ...",
                     "cfg: set device to chan 9, 250 kbps", "> AB D4 09 00 BA",
                     "cfg: set local device chan and baud failed", "finished"}));
    search.link.close();
    ASSERT_EQ(search.cfg.search_all(1, 1), 0);
    EXPECT_EQ(search.finish().mid(4),
              (QStringList{"cfg: link is not open!!, please check",
                           "cfg: set local device chan and baud failed", "finished"}));
}

TEST(CnetSearch, RefusesASecondStartAndEndsAtAnAbortInEachExchange)
{
    for (int request = 1; request <= 4; ++request) {
        SCOPED_TRACE(request);
        Search search;
        search.gate.close_at(request);
        ASSERT_EQ(search.cfg.search_addr(3, 1, 0x0102), 0);
        ASSERT_TRUE(wait_until([&] { return search.gate.is_reached(); }));
        EXPECT_EQ(search.cfg.search_addr(1, 1, 0xFFFF), -16);
        search.cfg.abort();
        search.gate.release();
        QStringList transcript = search.finish();
        EXPECT_EQ(transcript.last(), "finished");
        EXPECT_EQ(transcript.filter("> ").size(), request <= 2 ? 2 : 4); // the pair in progress
        EXPECT_FALSE(transcript.contains("> AB D6 FF FF BA"));

        // The abort doesn't reach the next one.
        ASSERT_EQ(search.cfg.search_addr(3, 1, 0x0102), 0);
        EXPECT_EQ(search.finish().filter("> ").size(), 4);
    }
}

TEST(CnetSearch, EndsAtAnAbortBehindAnAnswerThoughMoreWait)
{
    Search search;
    search.device = [](const QByteArray& request) {
        return request[1] == char(0xD4) ? hex("AB D4 00 BA")
                                        : hex("AB D5 01 02 03 04 05 BA AB D5 01 02 03 04 05 BA");
    };
    QObject::connect(
        &search.cfg, qOverload<int, int, const cnet_search_response*>(&CnetCfg::dev_found),
        &search.cfg, [&] { search.cfg.abort(); }, Qt::DirectConnection);
    ASSERT_EQ(search.cfg.search_all(3, 7), 0);
    const QStringList transcript = search.finish();
    EXPECT_EQ(transcript.filter("found ").size(), 1);
    EXPECT_EQ(transcript.filter("> ").size(), 2);
    EXPECT_EQ(transcript.last(), "finished");
}
