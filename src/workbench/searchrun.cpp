#include "workbench/searchrun.h"

#include "framers/qframerchan.h"
#include "tools/dorvcfg.h"

#include <QElapsedTimer>
#include <algorithm>

namespace {
// Searches on its caller's thread, as the sockets of links belong to theirs.
class HereCnet final : public CnetCfg
{
public:
    using CnetCfg::CnetCfg;
    void search_here(const CnetSearchSettings& settings)
    {
        const bool targeted = !settings.target.isEmpty();
        const CnetCommand& command = settings.long_answers
                                         ? (targeted ? cnet::SEARCH_ADDR_EXT : cnet::SEARCH_ALL_EXT)
                                         : (targeted ? cnet::SEARCH_ADDR : cnet::SEARCH_ALL);
        search_prepare(settings.channels, settings.rates,
                       targeted ? settings.target.constData() : nullptr, command.code);
    }
    using CnetCfg::run;
};

// Looks without an event loop, which would run the next work of the link's thread inside this one.
class HereDorv final : public DorvCfg
{
public:
    using DorvCfg::DorvCfg;
    using DorvCfg::search_timer_timeout;
};
} // namespace

template <typename Work> void SearchRun::start(LinkWorker& link, bool cnet, const Work& work)
{
    const auto report = std::make_shared<SearchReport>();
    report->cnet = cnet;
    task.start(
        link,
        [report, work](Stack* stack) {
            if (stack)
                *report = work(*stack);
        },
        [this, report] { emit ended(*report); });
}

void SearchRun::cnet_start(LinkWorker& link, const CnetSearchSettings& settings)
{
    start(link, true, [this, settings](Stack& stack) { return cnet_search(stack, settings); });
}

void SearchRun::dorv_start(LinkWorker& link, int duration_ms)
{
    start(link, false,
          [this, duration_ms](Stack& stack) { return dorv_search(stack, duration_ms); });
}

SearchReport SearchRun::cnet_search(Stack& stack, const CnetSearchSettings& settings)
{
    HereCnet cfg(&stack.link());
    cnet_connect(cfg, stack);
    cfg.search_here(settings);
    task.abort_step_set([&cfg] { cfg.abort(); });
    cfg.run();
    task.abort_step_set({});
    return {true, cfg.outcome(), stack.trouble()};
}

void SearchRun::cnet_connect(CnetCfg& cfg, Stack& stack)
{
    const auto on = [&cfg](auto signal, auto receiver) {
        connect(&cfg, signal, &cfg, receiver, Qt::DirectConnection);
    };
    on(&CnetCfg::log, [&stack](const QString& line) { stack.sink().note(line); });
    on(&CnetCfg::search_started,
       [this](int total) { task.report([this, total] { emit begun(total); }); });
    on(&CnetCfg::search_progress, [this](int current, int channel, int rate) {
        task.report([this, current, channel, rate] {
            emit advanced(current);
            emit pair_begun(channel, rate);
        });
    });
    on_cnet_found(cfg, [this](int channel, int rate, const QByteArray& answer) {
        FoundDevice device;
        device.channel = channel;
        device.rate = rate;
        device.answer = answer;
        task.report([this, device] { emit device_found(device); });
    });
}

SearchReport SearchRun::dorv_search(Stack& stack, int duration_ms)
{
    HereDorv cfg(&stack.link());
    // The search listens below its framer; this one adds nothing and has the real ones below.
    QFramerChan listener(&stack.top());
    cfg.framer_set(&listener);
    connect(
        &cfg, &DorvCfg::dev_found, &cfg,
        [this](int, int, const QString& info) {
            FoundDevice device;
            device.report = info;
            task.report([this, device] { emit device_found(device); });
        },
        Qt::DirectConnection);
    task.report([this, duration_ms] { emit begun(duration_ms); });
    QElapsedTimer clock;
    clock.start();
    cfg.search_start();
    // The look that begins after the end, or after a loss, is the last one: it reads the rest of a
    // report that came just before.
    for (bool last = false; !last && !task.aborted();) {
        const int done = int(std::min<std::int64_t>(clock.elapsed(), duration_ms));
        last = done == duration_ms || stack.lost();
        cfg.search_timer_timeout(); // waits for as long as the link's time-out
        task.report([this, done] { emit advanced(done); });
    }
    const CnetOutcome outcome = stack.lost()     ? CnetOutcome::LinkError
                                : task.aborted() ? CnetOutcome::Aborted
                                                 : CnetOutcome::Done;
    return {false, outcome, stack.trouble()};
}
