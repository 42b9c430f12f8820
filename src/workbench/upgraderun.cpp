#include "workbench/upgraderun.h"

#include <QElapsedTimer>

namespace {
// A loader that runs on its caller's thread.
class HereLoader final : public Loader
{
public:
    using Loader::Loader;
    void run_here() { run(); }
};

void apply(Loader& loader, const QString& file, const RunSettings& settings)
{
    loader.filename_set(file);
    loader.pack_len_set(uint(settings.packet));
    loader.retry_count_set(uint(settings.attempts));
    loader.send_interval_set(uint(settings.interval_ms));
    loader.reset_wait_ms_set(uint(settings.reset_wait_ms));
    loader.verify_wait_ms_set(uint(settings.verify_wait_ms));
}
} // namespace

UpgradeRun::~UpgradeRun()
{
    abort();
    left->acquire(runs);
    home.catch_up();
}

void UpgradeRun::start(LinkWorker& link, const QString& file, const RunSettings& settings)
{
    under_way = true;
    abort_asked = false;
    ++runs;
    link.run([this, file, settings, left = left](Stack* stack) {
        UpgradeReport report;
        report.outcome.ending = LoaderEnding::NoInfo;
        report.link.kind = LinkTrouble::ConnectionLost;
        if (stack)
            report = work(*stack, file, settings);
        home.post([this, report] {
            under_way = false;
            emit ended(report);
        });
        left->release();
    });
}

void UpgradeRun::abort()
{
    const std::lock_guard<std::mutex> lock(mutex);
    abort_asked = true;
    if (loader)
        loader->abort();
}

// On the link's thread.
UpgradeReport UpgradeRun::work(Stack& stack, const QString& file, const RunSettings& settings)
{
    UpgradeReport report;
    HereLoader here(&stack.top());
    apply(here, file, settings);
    connect_signals(here, stack);
    connect(
        &here, &Loader::upgrade_started, &here, [&](int size) { report.file_size = size; },
        Qt::DirectConnection);
    {
        const std::lock_guard<std::mutex> lock(mutex);
        loader = &here;
        if (abort_asked)
            here.abort();
    }
    const std::int64_t sent_before = stack.link().bytes_sent();
    QElapsedTimer clock;
    clock.start();
    here.run_here();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        loader = nullptr;
    }
    report.outcome = here.outcome();
    report.link = stack.trouble();
    report.elapsed_ms = clock.elapsed();
    report.wire_bytes = stack.link().bytes_sent() - sent_before;
    return report;
}

void UpgradeRun::connect_signals(Loader& loader, Stack& stack)
{
    connect(
        &loader, &Loader::log, &loader, [&stack](const QString& line) { stack.sink().note(line); },
        Qt::DirectConnection);
    const auto pass_on = [&](auto signal, auto own) {
        connect(
            &loader, signal, &loader,
            [this, own](const auto&... values) {
                home.post([this, own, values...] { emit(this->*own)(values...); });
            },
            Qt::DirectConnection);
    };
    pass_on(&Loader::device_found, &UpgradeRun::device_found);
    pass_on(&Loader::phase_begun, &UpgradeRun::phase_begun);
    pass_on(&Loader::upgrade_started, &UpgradeRun::begun);
    pass_on(&Loader::page_state, &UpgradeRun::page_state);
    pass_on(&Loader::upgrade_progress, &UpgradeRun::progress);
}
