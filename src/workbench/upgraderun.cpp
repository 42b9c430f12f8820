#include "workbench/upgraderun.h"

void UpgradeRun::start(LinkWorker& link, const QString& file, const UpgradeSettings& settings)
{
    const auto run = [this, file, settings](Stack* stack) {
        report = {};
        report.outcome.ending = LoaderEnding::NoInfo;
        report.link.kind = LinkTrouble::ConnectionLost;
        if (stack)
            work(*stack, file, settings);
    };
    job.start(link, run, [this] { emit ended(report); });
}

// On the link's thread.
void UpgradeRun::work(Stack& stack, const QString& file, const UpgradeSettings& settings)
{
    Upgrade upgrade;
    job.abort_step_set([&] { upgrade.abort(); });
    report =
        upgrade.run(stack, file, settings, [this](Loader& loader) { connect_signals(loader); });
    job.abort_step_set({});
}

void UpgradeRun::connect_signals(Loader& loader)
{
    const auto pass_on = [&](auto signal, auto own) {
        connect(
            &loader, signal, &loader,
            [this, own](const auto&... values) {
                job.report([this, own, values...] { emit(this->*own)(values...); });
            },
            Qt::DirectConnection);
    };
    pass_on(&Loader::device_found, &UpgradeRun::device_found);
    pass_on(&Loader::phase_begun, &UpgradeRun::phase_begun);
    pass_on(&Loader::upgrade_started, &UpgradeRun::begun);
    pass_on(&Loader::page_state, &UpgradeRun::page_state);
    pass_on(&Loader::upgrade_progress, &UpgradeRun::progress);
}
