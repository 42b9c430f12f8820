// tarnwickctl cnet search: which devices answer, on which channels and rates.
#include "checksum/hextext.h"
#include "cli/progressline.h"
#include "cli/session.h"
#include "cli/typedargument.h"
#include "stack/cnetsearch.h"
#include "stack/numbermask.h"

#include <QElapsedTimer>
#include <QJsonArray>

namespace {
QByteArray parse_target(const Piece& text)
{
    QByteArray target = parse_hex_bytes(text);
    if (!target.isEmpty() && target.size() != CNET_TARGET_SIZE)
        throw text.error("a target has 4 hexadecimal digits");
    return target;
}

CnetSearchSettings settings_of(const Invocation& invocation)
{
    invocation.expect_at_most(0);
    const auto channels = [](const Piece& text) {
        return parse_number_mask(text, CNET_FIRST_CHANNEL, CNET_FIRST_CHANNEL + CNET_CHANNELS - 1);
    };
    const auto rates = [](const Piece& text) { return parse_number_mask(text, 0, CNET_RATES - 1); };
    return {
        parse_argument("--channels", invocation.text("channels"), channels),
        parse_argument("--rates", invocation.text("rates"), rates),
        parse_argument("--target", invocation.text("target"), parse_target),
        invocation.has("long"),
    };
}

class Search
{
public:
    Search(const CnetSearchSettings& settings, Invocation& invocation)
        : settings(settings)
        , console(invocation.console)
        , interrupts(invocation.interrupts)
        , session(invocation)
    {
    }

    QJsonObject run();

private:
    void connect_signals();
    void start();
    void show_found(int channel, int rate, const QByteArray& answer);
    void show_progress(int current, int channel, int rate);

    const CnetSearchSettings settings;
    Console& console;
    Interrupts& interrupts;
    CnetSession session;
    CnetCfg& cfg = session.cfg;
    int pairs = 0;
    QElapsedTimer clock;
    QJsonArray found;
};

void Search::show_found(int channel, int rate, const QByteArray& answer)
{
    const QString bytes = hex_text(answer.constData(), int(answer.size()));
    console.line(
        QStringLiteral("channel %1  %2  %3").arg(channel, 2).arg(baud_text(rate), -8).arg(bytes));
    found.append(QJsonObject{
        {"channel", channel}, {"rate", rate}, {"rate_text", baud_text(rate)}, {"answer", bytes}});
}

void Search::show_progress(int current, int channel, int rate)
{
    const Progress progress = {current, pairs, clock.elapsed()};
    console.progress(count_text(progress, "pairs") + QStringLiteral(": channel %1, %2, %3 found")
                                                         .arg(channel)
                                                         .arg(baud_text(rate))
                                                         .arg(found.size()),
                     progress.percent());
}

// All but the interrupt comes on the search's own thread, and what it leaves is read after its
// end.
void Search::connect_signals()
{
    const auto on = [this](auto signal, auto receiver) {
        QObject::connect(&cfg, signal, &cfg, receiver, Qt::DirectConnection);
    };
    on(&CnetCfg::search_started, [this](int total) {
        pairs = total;
        clock.start();
    });
    on(&CnetCfg::search_progress,
       [this](int current, int channel, int rate) { show_progress(current, channel, rate); });
    on_cnet_found(cfg, [this](int channel, int rate, const QByteArray& answer) {
        show_found(channel, rate, answer);
    });
    QObject::connect(&interrupts, &Interrupts::interrupted, &cfg, [this] { cfg.abort(); });
}

void Search::start()
{
    const void* target = settings.target.constData();
    if (settings.target.isEmpty() && settings.long_answers)
        cfg.search_all_ext(settings.channels, settings.rates);
    else if (settings.target.isEmpty())
        cfg.search_all(settings.channels, settings.rates);
    else if (settings.long_answers)
        cfg.search_addr_ext(settings.channels, settings.rates, target);
    else
        cfg.search_addr(settings.channels, settings.rates, target);
}

QJsonObject Search::run()
{
    connect_signals();
    session.connection.stack.run_worker(
        cfg, [this] { start(); }, [this] { cfg.abort(); });
    console.end_progress();

    QJsonObject result = {{"devices", found}, {"pairs", pairs}};
    if (cfg.outcome() == CnetOutcome::Done)
        return result;
    if (cfg.outcome() == CnetOutcome::Aborted)
        throw Failure{ExitCode::Interrupted, "the search was stopped", {}, result};
    Failure failure = session.failure("the local device can't be tuned, so the search has ended");
    failure.partial_result = result;
    throw failure;
}

void run_search(Invocation& invocation)
{
    const CnetSearchSettings settings = settings_of(invocation);
    const QJsonObject result = Search(settings, invocation).run();
    if (result["devices"].toArray().isEmpty())
        invocation.console.note("No device answered.");
    invocation.console.result(result);
}
} // namespace

QList<Command> cnet_search_commands()
{
    return {{"cnet search",
             "",
             "Search the air for cnet devices.",
             "Has the local device ask on each channel and rate who is there, and prints each\n"
             "answer. It takes about --timeout for each pair of channel and rate. After it the\n"
             "local device stays on the last pair.\n\n"
             "  tarnwickctl cnet search --link serial:/dev/ttyUSB0,9600 --channels 9-12,30 "
             "--rates 0",
             {{"channels", "Channels to search, 9 to 30, as in 9-12,30.", "list", "9-30"},
              {"rates", "Rates to search: 0 for 250 kbps, 1 for 500 kbps, 2 for 1 Mbps.", "list",
               "0-2"},
              {"target", "Ask for this address alone, 4 hexadecimal digits.", "address"},
              {"long", "Ask for the longer answers of devices with long addresses."}},
             Needs::Link,
             run_search}};
}
