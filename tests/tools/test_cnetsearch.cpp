// The search for cnet devices: its frames and signals, and its ends.
#include "toolrun.h"
#include "tools/cnetcfg.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

class Search : public ToolRun
{
public:
    Search()
    {
        link.device = [this](const QByteArray& request) {
            add("> " + hex_of(request));
            if (request[1] != char(0xD4))
                return answer;
            answer = answers.value(request.mid(2, 2));
            return tuned;
        };
        note(cfg, &CnetCfg::log);
        note(cfg, &CnetCfg::search_started, "started");
        note(cfg, &CnetCfg::search_progress, "progress");
        note(cfg, &CnetCfg::search_finished, "finished");
        note_found<cnet_search_response>();
        note_found<cnet_search_response_ext>();
        note_end(cfg);
    }
    QStringList finish() { return ToolRun::finish(cfg); }

    QByteArray tuned = hex("AB D4 00 BA"); // to a command to tune
    QMap<QByteArray, QByteArray> answers;  // to a search, by channel and rate
    CnetCfg cfg{&link};

private:
    template <typename Record> void note_found()
    {
        const auto add_found = [this](int chan, int baud, const Record* answer) {
            const QByteArray bytes(reinterpret_cast<const char*>(answer->bytes), sizeof *answer);
            add(QStringLiteral("found %1 %2 ").arg(chan).arg(baud) + hex_of(bytes));
        };
        QObject::connect(&cfg, qOverload<int, int, const Record*>(&CnetCfg::dev_found), &cfg,
                         add_found, Qt::DirectConnection);
    }

    QByteArray answer;
};

} // namespace

TEST(CnetSearch, WalksTwoChannelsAtTwoRatesAndFindsThreeDevices)
{
    Search search;
    search.answers[hex("1E 00")] = hex("AB D5 01 02 03 04 05 BA AB D5 BA BA BA BA BA BA");
    search.answers[hex("09 02")] = hex("AB D5 00 AB 00 FF 80 BA");
    ASSERT_EQ(search.cfg.search_all(0xFFE00001, 0xFFFFFFF5), 0); // bits above the last are ignored
    const QStringList lines = search.finish();
    EXPECT_EQ(lines.filter("cfg: searching chan ").size(), 4);
    EXPECT_EQ(lines.filter(QRegularExpression("^[^c]")).join(", "),
              "started 4, progress 0 9 0, > AB D4 09 00 BA, > AB D5 BA, "
              "progress 1 30 0, > AB D4 1E 00 BA, > AB D5 BA, "
              "found 30 0 01 02 03 04 05, found 30 0 BA BA BA BA BA, "
              "progress 2 9 2, > AB D4 09 02 BA, > AB D5 BA, found 9 2 00 AB 00 FF 80, "
              "progress 3 30 2, > AB D4 1E 02 BA, > AB D5 BA, finished");
    EXPECT_EQ(int(search.cfg.outcome()), int(CnetOutcome::Done));
}

TEST(CnetSearch, SendsItsCommandWithOrWithoutTargetAndEndsThePairAtABadFrame)
{
    const QByteArray target = hex("AB BA");
    const struct
    {
        std::function<int(CnetCfg&)> start;
        QString request;
        QByteArray answer;
        QString found; // empty for no answer to it
    } rows[] = {
        {[](CnetCfg& cfg) { return cfg.search_addr(1, 4, 0x1234); }, "> AB D6 12 34 BA",
         hex("AB D6 01 02 03 04 05 BA"), "found 9 2 01 02 03 04 05"},
        {[](CnetCfg& cfg) { return cfg.search_addr(1, 4, nullptr); }, "> AB D6 12 34 BA",
         hex("AB D6 01 02 03 04 BA"), ""}, // the target of the search before
        {[&](CnetCfg& cfg) { return cfg.search_addr_ext(1, 4, target.constData()); },
         "> AB 66 AB BA BA", hex("AB 66 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D BA"),
         "found 9 2 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D"},
        {[](CnetCfg& cfg) { return cfg.search_addr_ext(1, 4, 0xFF00); }, "> AB 66 FF 00 BA",
         hex("AB 66 BA"), ""},
        {[](CnetCfg& cfg) { return cfg.search_all_ext(1, 4); }, "> AB 65 BA", hex("AB 64 BA"), ""},
    };
    Search search;
    for (const auto& row : rows) {
        search.answers[hex("09 02")] = row.answer;
        ASSERT_EQ(row.start(search.cfg), 0);
        const QStringList lines = search.finish();
        EXPECT_EQ(lines.filter("> ").mid(1), QStringList{row.request});
        EXPECT_EQ(lines.filter("found").join(','), row.found);
        EXPECT_EQ(lines.last(), "finished");
    }
}

TEST(CnetSearch, EndsAtOnceWithNothingToDoOrARefusalOrAClosedLink)
{
    Search search;
    ASSERT_EQ(search.cfg.search_all(0xFFC00000, 7), 0); // no channel that counts
    EXPECT_EQ(search.finish(), (QStringList{"started 0", "finished"}));
    ASSERT_EQ(search.cfg.search_begin(1, 1, nullptr, 0xD2), 0); // no search
    EXPECT_EQ(search.finish(), QStringList());

    search.tuned = hex("AB D4 01 BA");
    ASSERT_EQ(search.cfg.search_all(0x3FFFFF, 7), 0);
    EXPECT_EQ(search.finish().filter("> "), QStringList{"> AB D4 09 00 BA"});
    EXPECT_EQ(int(search.cfg.outcome()), int(CnetOutcome::Refused));
    search.link.close();
    ASSERT_EQ(search.cfg.search_all(1, 1), 0);
    EXPECT_TRUE(search.finish().contains("cfg: link is not open!!, please check"));
    EXPECT_EQ(int(search.cfg.outcome()), int(CnetOutcome::NoLink));
}

TEST(CnetSearch, RefusesASecondStartAndEndsAtAnAbortInEachExchangeAndAfterEachAnswer)
{
    const struct
    {
        int requests, answers; // up to the abort
        int all_requests;      // the pair in progress goes on to its first answer
    } rows[] = {{1, 0, 2}, {2, 1, 2}, {3, 2, 4}};
    Search search;
    search.answers[hex("09 00")] = hex("AB D6 01 02 03 04 05 BA AB D6 01 02 03 04 05 BA");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.requests);
        bool aborted = false;
        search.on_line = [&] {
            if (aborted || search.lines.filter("> ").size() != row.requests ||
                search.lines.filter("found").size() != row.answers)
                return;
            EXPECT_EQ(search.cfg.search_addr(1, 1, 0xFFFF), -16);
            search.cfg.abort();
            aborted = true;
        };
        ASSERT_EQ(search.cfg.search_addr(3, 3, 0x0102), 0);
        const QStringList lines = search.finish();
        EXPECT_EQ(lines.last(), "finished");
        EXPECT_EQ(lines.filter("> ").size(), row.all_requests);
        EXPECT_EQ(lines.filter("found").size(), row.all_requests / 2);
        EXPECT_EQ(int(search.cfg.outcome()), int(CnetOutcome::Aborted));
    }
    search.on_line = nullptr;
    ASSERT_EQ(search.cfg.search_addr(3, 1, 0x0102), 0); // no abort reaches the next one
    EXPECT_EQ(search.finish().filter("> ").size(), 4);
}
