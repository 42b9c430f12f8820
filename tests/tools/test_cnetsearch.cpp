// The search for cnet devices: its frames and signals, and its ends.
#include "toolrun.h"
#include "tools/cnetcfg.h"

#include <QRegularExpression>

namespace {

constexpr char NO_CHANNEL = 11; // to which the local device doesn't tune

class Search : public ToolRun
{
public:
    Search()
    {
        link.device = [this](const QByteArray& request) {
            add("> " + hex_of(request, int(request.size())));
            if (request[1] != char(0xD4))
                return answer;
            answer = answers.value(request.mid(2, 2));
            return request[2] == NO_CHANNEL ? hex("AB D4 01 BA") : hex("AB D4 00 BA");
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

    QMap<QByteArray, QByteArray> answers; // to a search, by channel and rate
    CnetCfg cfg{&link};

private:
    template <typename Record> void note_found()
    {
        QObject::connect(&cfg, qOverload<int, int, const Record*>(&CnetCfg::dev_found),
                         [this](int chan, int baud, const Record* answer) {
                             add(QString("found %1 %2 ").arg(chan).arg(baud) +
                                 hex_of(answer->bytes, sizeof *answer));
                         });
    }

    QByteArray answer;
};

} // namespace

TEST(CnetSearch, SendsItsFramesAndSignalsUntilItsEnd)
{
    using Start = std::function<int(CnetCfg&)>;
    using E = CnetOutcome;
    const QString one = "started 1, progress 0 9 2, > AB D4 09 02 BA";
    // clang-format off
    const std::tuple<Start, const char*, QString, CnetOutcome> rows[] = {
        {[](auto& c) { return c.search_addr(1, 4, 0x1234); }, "AB D6 01 02 03 04 05 BA",
         one + ", > AB D6 12 34 BA, found 9 2 01 02 03 04 05, finished", E::Done},
        {[](auto& c) { return c.search_addr(1, 4, nullptr); }, "AB D6 01 02 03 04 BA", // the target before
         one + ", > AB D6 12 34 BA, finished", E::Done},
        {[](auto& c) { return c.search_addr_ext(1, 4, "\xAB\xBA"); },
         "AB 66 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D BA",
         one + ", > AB 66 AB BA BA, found 9 2 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D, finished", E::Done},
        {[](auto& c) { return c.search_addr_ext(1, 4, 0xFF00); }, "AB 66 BA",
         one + ", > AB 66 FF 00 BA, finished", E::Done},
        {[](auto& c) { return c.search_all_ext(1, 4); }, "AB 64 BA", one + ", > AB 65 BA, finished", E::Done},
        {[](auto& c) { return c.search_all(0xFFE00001, 0xFFFFFFF5); }, // bits above the last are ignored
         "AB D5 00 AB 00 FF 80 BA AB D5 BA BA BA BA BA BA",
         "started 4, progress 0 9 0, > AB D4 09 00 BA, > AB D5 BA, progress 1 30 0, > AB D4 1E 00 BA, "
         "> AB D5 BA, progress 2 9 2, > AB D4 09 02 BA, > AB D5 BA, found 9 2 00 AB 00 FF 80, "
         "found 9 2 BA BA BA BA BA, progress 3 30 2, > AB D4 1E 02 BA, > AB D5 BA, finished", E::Done},
        {[](auto& c) { return c.search_all(0xFFC00000, 7); }, "", "started 0, finished", E::Done}, // no channel
        {[](auto& c) { return c.search_begin(1, 1, nullptr, 0xD2); }, "", "", E::Done}, // no search
        {[](auto& c) { return c.search_all(4, 4); }, "", // refused
         "started 1, progress 0 11 2, > AB D4 0B 02 BA, finished", E::Refused},
    };
    // clang-format on
    Search search;
    for (const auto& [start, answer, expected, outcome] : rows) {
        search.answers = {{hex("09 02"), hex(answer)}};
        ASSERT_EQ(start(search.cfg), 0);
        const QStringList lines = search.finish();
        EXPECT_EQ(lines.filter(QRegularExpression("^[^cr]")).join(", "), expected);
        EXPECT_EQ(lines.filter("cfg: searching chan ").size(), lines.filter("progress ").size());
        EXPECT_EQ(search.cfg.outcome(), outcome);
    }
    search.link.close();
    ASSERT_EQ(search.cfg.search_all(1, 1), 0);
    EXPECT_TRUE(search.finish().contains("cfg: link is not open!!, please check"));
    EXPECT_EQ(search.cfg.outcome(), E::NoLink);
}

TEST(CnetSearch, RefusesASecondStartAndEndsAtAnAbortInEachExchangeAndAfterEachAnswer)
{
    Search search;
    search.answers[hex("09 00")] = hex("AB D6 01 02 03 04 05 BA AB D6 01 02 03 04 05 BA");
    for (const int requests : {1, 2, 3}) { // sent up to the abort
        bool aborted = false;
        search.on_line = [&] {
            if (aborted || search.lines.filter("> ").size() != requests ||
                search.lines.filter("found").size() != requests - 1)
                return;
            EXPECT_EQ(search.cfg.search_addr(1, 1, 0xFFFF), -16);
            search.cfg.abort();
            aborted = true;
        };
        ASSERT_EQ(search.cfg.search_addr(3, 3, 0x0102), 0);
        const QStringList lines = search.finish();
        EXPECT_EQ(lines.last(), "finished");
        // The pair in progress goes on to its first answer.
        EXPECT_EQ(lines.filter("> ").size(), requests + requests % 2);
        EXPECT_EQ(search.cfg.outcome(), CnetOutcome::Aborted);
    }
    search.on_line = nullptr;
    ASSERT_EQ(search.cfg.search_addr(3, 1, 0x0102), 0); // no abort reaches the next one
    EXPECT_EQ(search.finish().filter("> ").size(), 4);
}
