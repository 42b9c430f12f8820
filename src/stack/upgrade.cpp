#include "stack/upgrade.h"

#include "stack/stack.h"

#include <QElapsedTimer>

namespace {
// A loader that runs on its caller's thread.
class HereLoader final : public Loader
{
public:
    using Loader::Loader;
    void run_here() { run(); }
};

void apply(Loader& loader, const QString& file, const UpgradeSettings& settings)
{
    loader.filename_set(file);
    loader.pack_len_set(uint(settings.packet));
    loader.retry_count_set(uint(settings.attempts));
    loader.send_interval_set(uint(settings.interval_ms));
    loader.reset_wait_ms_set(uint(settings.reset_wait_ms));
    loader.verify_wait_ms_set(uint(settings.verify_wait_ms));
}
} // namespace

UpgradeReport Upgrade::run(Stack& stack, const QString& file, const UpgradeSettings& settings,
                           const Watch& watch)
{
    UpgradeReport report;
    HereLoader here(&stack.top());
    apply(here, file, settings);
    QObject::connect(
        &here, &Loader::log, &here, [&](const QString& line) { stack.sink().note(line); },
        Qt::DirectConnection);
    QObject::connect(
        &here, &Loader::upgrade_started, &here, [&](int size) { report.file_size = size; },
        Qt::DirectConnection);
    watch(here);
    const std::int64_t sent_before = stack.link().bytes_sent();
    QElapsedTimer clock;
    clock.start();
    loader_set(&here);
    here.run_here();
    loader_set(nullptr);
    report.outcome = here.outcome();
    report.link = stack.trouble();
    report.elapsed_ms = clock.elapsed();
    report.wire_bytes = stack.link().bytes_sent() - sent_before;
    return report;
}

void Upgrade::abort()
{
    const std::lock_guard<std::mutex> lock(mutex);
    abort_asked = true;
    if (loader)
        loader->abort();
}

void Upgrade::loader_set(Loader* running)
{
    const std::lock_guard<std::mutex> lock(mutex);
    loader = running;
    if (loader && abort_asked)
        loader->abort();
}
