// tarnwickctl cnet search: which devices answer, on which channels and rates.
#include "cli/cnetcommands.h"

#include "checksum/hextext.h"
#include "cli/cnetaddress.h"
#include "cli/progress.h"

#include <QElapsedTimer>
#include <QJsonArray>

namespace {
const char LOG_TUNING_FAILED[] = "cfg: set local device chan and baud failed";

struct SearchSettings
{
    quint32 channels;
    quint32 rates;
    QByteArray target; // empty: everybody is asked
    bool long_answers;
};

SearchSettings settings_of(const Invocation& invocation)
{
    invocation.expect_at_most(0);
    const QString channels = invocation.text("channels");
    const QString rates = invocation.text("rates");
    const QString target = invocation.text("target");
    SearchSettings settings = {
        parsed_or_usage("--channels", channels,
                        parse_number_mask(channels, CNET_FIRST_CHANNEL,
                                          CNET_FIRST_CHANNEL + CNET_CHANNELS - 1)),
        parsed_or_usage("--rates", rates, parse_number_mask(rates, 0, CNET_RATES - 1)),
        parsed_or_usage("--target", target, parse_hex_bytes(target)),
        invocation.has("long"),
    };
    if (!target.isEmpty() && settings.target.size() != CNET_TARGET_SIZE)
        throw usage_failure("--target " + target + ": a target has 4 hexadecimal digits");
    return settings;
}

class Search
{
public:
    Search(const SearchSettings& settings, Connection& connection, Console& console,
           Interrupts& interrupts)
        : settings(settings)
        , connection(connection)
        , console(console)
        , interrupts(interrupts)
        , cfg(&connection.stack.link())
    {
    }

    QJsonObject run();

private:
    void connect_signals();
    void start();
    void show_found(int channel, int rate, const void* answer, int size);
    void show_progress(int current, int channel, int rate);

    const SearchSettings settings;
    Connection& connection;
    Console& console;
    Interrupts& interrupts;
    CnetCfg cfg;
    bool link_failed = false;
    bool tuning_failed = false;
    int pairs = 0;
    QElapsedTimer clock;
    QJsonArray found;
};

void Search::show_found(int channel, int rate, const void* answer, int size)
{
    const QString bytes = hex_text(answer, size);
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

// All but the interrupt comes on the search's own thread, and what it leaves is read behind its
// end.
void Search::connect_signals()
{
    const auto on = [this](auto signal, auto receiver) {
        QObject::connect(&cfg, signal, &cfg, receiver, Qt::DirectConnection);
    };
    on(&CnetCfg::log, [this](const QString& line) {
        connection.log.told(line);
        tuning_failed = tuning_failed || line == LOG_TUNING_FAILED;
    });
    on(&CnetCfg::search_started, [this](int total) {
        pairs = total;
        clock.start();
    });
    on(&CnetCfg::search_progress, [this](int current, int channel, int rate) {
        if (!link_failed)
            show_progress(current, channel, rate);
    });
    on(qOverload<int, int, const cnet_search_response*>(&CnetCfg::dev_found),
       [this](int channel, int rate, const cnet_search_response* answer) {
           show_found(channel, rate, answer->bytes, sizeof answer->bytes);
       });
    on(qOverload<int, int, const cnet_search_response_ext*>(&CnetCfg::dev_found),
       [this](int channel, int rate, const cnet_search_response_ext* answer) {
           show_found(channel, rate, answer->bytes, sizeof answer->bytes);
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
    const auto begin = [this] { start(); };
    connection.stack.run_worker(cfg, begin, [this](bool opened) {
        link_failed = !opened;
        if (link_failed)
            cfg.abort();
    });
    console.end_progress();

    QJsonObject result = {{"devices", found}, {"pairs", pairs}};
    if (link_failed)
        throw connection.stack.open_failure();
    if (tuning_failed) {
        Failure failure = connection.stack.no_answer(
            "the local device can't be tuned, so the search has ended",
            "Is the local device on? Check the port, its rate and format.");
        failure.partial_result = result;
        throw failure;
    }
    if (interrupts.raised())
        throw Failure{ExitCode::Interrupted, "the search was stopped", {}, result};
    return result;
}

void run_search(Invocation& invocation)
{
    const SearchSettings settings = settings_of(invocation);
    Connection connection(invocation);
    const QJsonObject result =
        Search(settings, connection, invocation.console, invocation.interrupts).run();
    if (result["devices"].toArray().isEmpty())
        invocation.console.note("No device answered.");
    invocation.console.result(result);
}
} // namespace

Command cnet_search_command()
{
    return {
        "cnet search",
        "",
        "Search the air for cnet devices.",
        "Has the local device ask on each channel and rate who is there, and prints each\n"
        "answer. It takes about --timeout for each pair of channel and rate. Behind it the\n"
        "local device stays on the last pair.\n\n"
        "  tarnwickctl cnet search --link serial:/dev/ttyUSB0,9600 --channels 9-12,30 "
        "--rates 0",
        {{"channels", "Channels to search, 9 to 30, as in 9-12,30.", "list", "9-30"},
         {"rates", "Rates to search: 0 for 250 kbps, 1 for 500 kbps, 2 for 1 Mbps.", "list", "0-2"},
         {"target", "Ask for this address alone, 4 hexadecimal digits.", "address"},
         {"long", "Ask for the longer answers of devices with long addresses."}},
        Needs::Link,
        run_search};
}
