#include "workbench/upgradeverdict.h"

#include "workbench/linkwords.h"

namespace {
// Sentences in a row, with a blank between where the language has one.
QString joined(const QString& first, const QString& second)
{
    return UpgradeVerdict::tr("%1 %2").arg(first, second);
}

QString rerun()
{
    return UpgradeVerdict::tr("Start again: pages that have arrived aren't sent a second time.");
}

QString reason_text(LoaderReason reason)
{
    switch (reason) {
    case LoaderReason::None:
        return UpgradeVerdict::tr("no attempt was made");
    case LoaderReason::NoReply:
        return UpgradeVerdict::tr("no reply came in time");
    case LoaderReason::BadReply:
        return UpgradeVerdict::tr("a reply was none to what was asked");
    case LoaderReason::ZeroSize:
        return UpgradeVerdict::tr("it reports a page size or an MTU of 0");
    case LoaderReason::ShortPacket:
        return UpgradeVerdict::tr("a packet has at least 4 bytes");
    case LoaderReason::PacketRefused:
        return UpgradeVerdict::tr("the module refused a packet");
    case LoaderReason::CrcDiffers:
        return UpgradeVerdict::tr("what it holds differs from the file");
    case LoaderReason::FileNotOpened:
        return UpgradeVerdict::tr("it can't be opened");
    case LoaderReason::FileTooLarge:
        return UpgradeVerdict::tr("it is larger than 2 GiB");
    case LoaderReason::NoMemory:
        return UpgradeVerdict::tr("there isn't enough memory for it");
    case LoaderReason::FileCutShort:
        return UpgradeVerdict::tr("it can't be read to its end");
    }
    return {};
}

bool link_gone(const LinkProblem& link)
{
    return link.kind == LinkTrouble::PortGone || link.kind == LinkTrouble::ConnectionLost;
}

UpgradeVerdict good_end(const UpgradeReport& report, const QString& file_name)
{
    return {true,
            UpgradeVerdict::tr("%1: the module holds all %2 bytes and says so, after %3 s.")
                .arg(file_name, QString::number(report.file_size),
                     QString::number(double(report.elapsed_ms) / 1000, 'f', 1)),
            link_gone(report.link)
                ? UpgradeVerdict::tr("The link has gone: if the module doesn't restart, switch it "
                                     "off and on.")
                : UpgradeVerdict::tr("It has been restarted.")};
}

UpgradeVerdict send_failed(const UpgradeReport& report, const UpgradeSettings& settings)
{
    const LoaderOutcome& outcome = report.outcome;
    if (outcome.refusals == std::uint32_t(settings.attempts))
        return {false,
                UpgradeVerdict::tr(
                    "The module refused all %1 attempts to send the packet at offset %2.")
                    .arg(outcome.refusals)
                    .arg(outcome.offset),
                UpgradeVerdict::tr(
                    "Maybe the file (%1 bytes) is larger than the module's memory; if it isn't, "
                    "try a packet length of 256.")
                    .arg(report.file_size)};
    return {false, UpgradeVerdict::tr("The transfer failed: %1.").arg(reason_text(outcome.reason)),
            joined(rerun(), UpgradeVerdict::tr("On a bad line, a packet length of 256 helps."))};
}
} // namespace

QString UpgradeVerdict::text() const
{
    return next.isEmpty() ? what : joined(what, next);
}

UpgradeVerdict upgrade_verdict(const UpgradeReport& report, const QString& file_name,
                               const UpgradeSettings& settings)
{
    const LoaderOutcome& outcome = report.outcome;
    const QString reason = reason_text(outcome.reason);
    switch (outcome.ending) {
    case LoaderEnding::Upgraded:
        return good_end(report, file_name);
    case LoaderEnding::Aborted:
        return {false, UpgradeVerdict::tr("The upgrade was stopped."),
                joined(UpgradeVerdict::tr("The module may wait in its boot code."), rerun())};
    case LoaderEnding::FileNotRead:
        return {false, UpgradeVerdict::tr("The file %1: %2.").arg(file_name, reason),
                UpgradeVerdict::tr("Choose it anew, or another one.")};
    case LoaderEnding::WrongFirmware:
        return {
            false,
            UpgradeVerdict::tr("Wrong firmware: %1 is not for the module %2.")
                .arg(file_name, outcome.module_name),
            UpgradeVerdict::tr("Choose the file whose name begins with the module's name and an "
                               "underscore.")};
    default:
        break;
    }
    if (link_gone(report.link))
        return {false, LinkWords::sentence(report.link), rerun()};
    switch (outcome.ending) {
    case LoaderEnding::NoInfo:
        return {false, UpgradeVerdict::tr("The module doesn't say what it is: %1.").arg(reason),
                UpgradeVerdict::tr("Check that it is on, and the rate, the format and the frame.")};
    case LoaderEnding::NoBootInfo:
    case LoaderEnding::NotInBoot:
        return {
            false, UpgradeVerdict::tr("The module didn't start its boot code."),
            UpgradeVerdict::tr("It may take longer: start again with a reset wait of 5000 ms.")};
    case LoaderEnding::VerifyFailed:
        return {
            false,
            UpgradeVerdict::tr("The module doesn't say that it holds the file: %1.").arg(reason),
            joined(UpgradeVerdict::tr("It stays in its boot code."), rerun())};
    default:
        return send_failed(report, settings);
    }
}
