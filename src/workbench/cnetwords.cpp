#include "workbench/cnetwords.h"

#include "workbench/linkwords.h"

namespace {
bool link_gone(const LinkProblem& link)
{
    return link.kind == LinkTrouble::PortGone || link.kind == LinkTrouble::ConnectionLost;
}
} // namespace

QString CnetWords::search_end(const SearchReport& report, int pairs, int found)
{
    switch (report.outcome) {
    case CnetOutcome::Done:
        if (found > 0)
            return tr("The search is over, devices found: %1.").arg(found);
        return report.cnet
                   ? tr("Nobody answered on these %1 pairs of channel and rate: are the "
                        "devices on? A longer time-out gives them more time.")
                         .arg(pairs)
                   : tr("No module reported itself: are they on? Listen for a longer time.");
    case CnetOutcome::Aborted:
        return report.cnet ? tr("The search was stopped after %1 pairs, devices found: %2.")
                                 .arg(pairs)
                                 .arg(found)
                           : tr("The search was stopped, devices found: %1.").arg(found);
    case CnetOutcome::Refused:
        return tr("The local device refuses a channel or rate of this search: leave it out.");
    default:
        if (link_gone(report.link))
            return LinkWords::sentence(report.link);
        return tr("The local device can't be tuned, so the search has ended: is it on? Check its "
                  "port, rate and format.");
    }
}

QString CnetWords::block_end(const BlockReport& report, const QString& address, bool written)
{
    if (report.good())
        return written ? tr("The configuration of %1 is written and read back.").arg(address)
                       : tr("The configuration of %1 is read.").arg(address);
    if (report.outcome == CnetOutcome::Aborted)
        return tr("The work on the configuration of %1 was stopped.").arg(address);
    if (link_gone(report.link))
        return LinkWords::sentence(report.link);
    if (report.step == BlockStep::Tune)
        return report.outcome == CnetOutcome::Refused
                   ? tr("The local device refuses this channel and rate.")
                   : tr("The local device can't be tuned: is it on? Check its port, rate and "
                        "format.");
    if (report.outcome == CnetOutcome::Refused)
        return tr("The device %1 refuses this configuration: read what it holds.").arg(address);
    if (report.step == BlockStep::Write)
        return tr("The device %1 doesn't confirm the new configuration: read what it holds.")
            .arg(address);
    return tr("The device %1 doesn't answer: check its address and that it is on, or give it a "
              "longer time-out.")
        .arg(address);
}
