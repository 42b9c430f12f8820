#include "workbench/settingsrun.h"

#include "workbench/settingvalue.h"

#include <algorithm>

namespace {
// After these the module may answer at another rate, or not at all.
bool goes_last(const SettingTask& task)
{
    return task.setting && (task.setting->name == "uartcfg" || task.setting->name == "sleep");
}

// Counts the result; false when the run can't go on.
bool take(SettingsReport& report, const SettingResult& result)
{
    if (result.outcome == DorvOutcome::NoReply)
        report.ending = SettingsEnding::Silent;
    else if (result.outcome == DorvOutcome::Echoed)
        report.ending = SettingsEnding::Echo;
    else if (result.outcome == DorvOutcome::Done && !result.differs)
        ++report.done;
    else
        ++report.bad;
    return report.ending == SettingsEnding::Done;
}
} // namespace

void SettingsRun::start(LinkWorker& link, const QVector<SettingTask>& tasks)
{
    QVector<SettingTask> ordered = tasks;
    std::stable_partition(ordered.begin(), ordered.end(),
                          [](const SettingTask& task) { return !goes_last(task); });
    const auto run = [this, ordered](Stack* stack) {
        report = {};
        report.total = int(ordered.size());
        if (stack)
            return work(*stack, ordered);
        report.ending = SettingsEnding::Silent;
        report.link.kind = LinkTrouble::ConnectionLost;
    };
    job.start(link, run, [this] { emit ended(report); });
}

// On the link's thread, as is all below.
void SettingsRun::work(Stack& stack, const QVector<SettingTask>& tasks)
{
    DorvCfg cfg(&stack.link());
    cfg.framer_set(&stack.top());
    for (const SettingTask& next : tasks) {
        report.kind = next.kind;
        report.last = next.setting ? next.setting->name : QString();
        if (job.aborted()) {
            report.ending = SettingsEnding::Aborted;
            break;
        }
        const SettingResult found = carry_out(cfg, next);
        job.report([this, found] { emit result(found); });
        if (!take(report, found))
            break;
    }
    report.link = stack.trouble();
}

template <typename Operation>
DorvOutcome SettingsRun::repeated(DorvCfg& cfg, Operation operation) const
{
    for (int attempt = 0; attempt == 0 || (attempt < ATTEMPTS && !job.aborted()); ++attempt) {
        operation();
        if (cfg.outcome() != DorvOutcome::NoReply)
            break;
    }
    return cfg.outcome();
}

SettingResult SettingsRun::carry_out(DorvCfg& cfg, const SettingTask& task) const
{
    SettingResult result;
    result.setting = task.setting;
    result.kind = task.kind;
    if (!task.setting) {
        result.outcome = repeated(cfg, [&] { cfg.command_mode_enter(); });
        result.reply = cfg.reply();
        return result;
    }
    if (task.kind == SettingTask::Kind::Write)
        write(cfg, task, result);
    if (task.setting->get && result.outcome == DorvOutcome::Done)
        read(cfg, task, result);
    return result;
}

void SettingsRun::write(DorvCfg& cfg, const SettingTask& task, SettingResult& result) const
{
    result.outcome = repeated(cfg, [&] { task.setting->set(cfg, task.values); });
    result.reply = cfg.reply();
    result.held = SettingValue::line(*task.setting, task.values);
    // The command that turns the echo off is the last to be echoed.
    if (result.outcome == DorvOutcome::Echoed && task.setting->name == "echo")
        result.outcome = DorvOutcome::Done;
}

void SettingsRun::read(DorvCfg& cfg, const SettingTask& task, SettingResult& result) const
{
    const bool back = task.kind == SettingTask::Kind::Write;
    DorvValues values;
    result.outcome = repeated(cfg, [&] { task.setting->get(cfg, values); });
    result.reply = cfg.reply();
    if (back && result.outcome == DorvOutcome::Refused)
        result.outcome = DorvOutcome::Done; // it was agreed to, and may be hidden from readers
    else if (result.outcome == DorvOutcome::Done) {
        const QString found = SettingValue::line(*task.setting, values);
        result.differs = back && !SettingValue::begins(result.held, found);
        if (!back || result.differs)
            result.held = found;
    }
}
