#include "workbench/settingsverdict.h"

#include "workbench/linkwords.h"

namespace {
QString counted(const SettingsReport& report)
{
    const bool written = report.kind == SettingTask::Kind::Write;
    return (written ? SettingsVerdict::tr("Settings written: %1 of %2.")
                    : SettingsVerdict::tr("Settings read: %1 of %2."))
        .arg(report.done)
        .arg(report.total);
}

QString whole_run(const SettingsReport& report)
{
    const bool all = report.bad == 0;
    if (report.kind == SettingTask::Kind::CommandMode)
        return all ? SettingsVerdict::tr("The module takes commands.")
                   : SettingsVerdict::tr("The module refuses the command mode.");
    return all ? counted(report)
               : SettingsVerdict::tr("%1 The column State says what became of the others.")
                     .arg(counted(report));
}

QString silence(const SettingsReport& report)
{
    const bool silent = report.link.kind == LinkTrouble::NoAnswer;
    if (!silent)
        return LinkWords::sentence(report.link);
    if (report.kind == SettingTask::Kind::CommandMode)
        return SettingsVerdict::tr("The module doesn't answer: check that it is on, the rate, the "
                                   "format, and the frame, which mostly is none.");
    return SettingsVerdict::tr(
               "The module doesn't answer for %1: begin the command mode, and check "
               "the rate, the format, and the frame, which mostly is none.")
        .arg(report.last);
}
} // namespace

SettingsVerdict settings_verdict(const SettingsReport& report)
{
    switch (report.ending) {
    case SettingsEnding::Done:
        return {report.bad == 0, whole_run(report)};
    case SettingsEnding::Aborted:
        return {false, SettingsVerdict::tr("Stopped. %1").arg(counted(report))};
    case SettingsEnding::Echo:
        return {false, SettingsVerdict::tr("The module repeats what it is sent: type off for the "
                                           "setting echo, and write it alone.")};
    case SettingsEnding::Silent:
        break;
    }
    return {false, silence(report)};
}
