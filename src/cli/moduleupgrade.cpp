#include "cli/moduleupgrade.h"

#include "checksum/hextext.h"
#include "cli/interrupts.h"
#include "cli/linkfailure.h"
#include "cli/upgradefailure.h"

#include <QEventLoop>
#include <system_error>

ModuleUpgrade::ModuleUpgrade(const StackDescription& description, const QString& file,
                             const UpgradeSettings& settings, ExchangeSink& log, UpgradeWatch watch)
    : description(description)
    , file(file)
    , settings(settings)
    , log(log)
    , watch(std::move(watch))
{
}

ModuleUpgrade::~ModuleUpgrade()
{
    abort();
    ending();
}

bool ModuleUpgrade::start()
{
    try {
        thread = std::thread(&ModuleUpgrade::run, this);
    } catch (const std::system_error&) {
        result.failure = open_failure({LinkTrouble::NoThread, {}});
    }
    return thread.joinable();
}

const ModuleEnding& ModuleUpgrade::ending()
{
    if (thread.joinable())
        thread.join();
    return result;
}

void ModuleUpgrade::run()
{
    try {
        work();
    } catch (const LinkProblem& problem) {
        result.failure = open_failure(problem);
    }
    emit finished();
}

void ModuleUpgrade::work()
{
    Stack stack(description, log);
    stack.open();
    const UpgradeReport report =
        upgrade.run(stack, file, settings, [this](Loader& loader) { connect_signals(loader); });
    result.report = report;
    if (report.outcome.ending != LoaderEnding::Upgraded)
        result.failure = upgrade_failure(report, file, settings);
    else
        watch.progress({report.file_size, report.file_size, pages_clock.elapsed()});
}

void ModuleUpgrade::connect_signals(Loader& loader)
{
    const auto on = [&loader](auto signal, auto receiver) {
        connect(&loader, signal, &loader, receiver, Qt::DirectConnection);
    };
    on(&Loader::phase_begun, [this](LoaderPhase phase) { note_phase(phase); });
    on(&Loader::dev_soft_info_set, [this](const QString& info) { note_soft_info(info); });
    on(&Loader::dev_hard_info_set, [this](const std::uint8_t* info, int nbytes) {
        if (info)
            result.hard_info = hex_text(info, nbytes);
    });
    on(&Loader::upgrade_progress, [this](int file_size, int offset) {
        if (sending && file_size > 0)
            watch.progress({offset, file_size, pages_clock.elapsed()});
    });
}

void ModuleUpgrade::note_phase(LoaderPhase phase)
{
    switch (phase) {
    case LoaderPhase::EnterBoot:
        return watch.note("The device starts its boot code ...");
    case LoaderPhase::Send:
        sending = true;
        pages_clock.start();
        return watch.note("Sending the pages that differ ...");
    case LoaderPhase::Verify:
        return watch.note("The device verifies the whole file ...");
    }
}

void ModuleUpgrade::note_soft_info(const QString& info)
{
    if (info == "N/A") // what the signal carries when there is none
        return;
    watch.note("Device: " + info);
    if (result.soft_info.isEmpty())
        result.soft_info = info;
}

void run_all(const QVector<ModuleUpgrade*>& modules, const Interrupts& interrupts)
{
    QEventLoop loop;
    int running = 0;
    for (ModuleUpgrade* const module : modules) {
        QObject::connect(module, &ModuleUpgrade::finished, &loop, [&] {
            if (--running == 0)
                loop.quit();
        });
        QObject::connect(&interrupts, &Interrupts::interrupted, &loop,
                         [module] { module->abort(); });
        if (module->start())
            ++running;
    }
    if (running > 0)
        loop.exec();
}
