#include "cli/upgradefailure.h"

#include "cli/linkfailure.h"

#include <QFileInfo>
#include <algorithm>

namespace {
const char RERUN[] = "Run the same command again: pages that have arrived aren't sent a second "
                     "time.";

constexpr struct
{
    LoaderReason reason;
    ExitCode code;
    const char* text;
} REASONS[] = {
    {LoaderReason::None, ExitCode::NoAnswer, "no attempt was made"},
    {LoaderReason::NoReply, ExitCode::NoAnswer, "no reply came in time"},
    {LoaderReason::BadReply, ExitCode::BadAnswer, "a reply was none to what was asked"},
    {LoaderReason::ZeroSize, ExitCode::Refused, "it reports a page size or an MTU of 0"},
    {LoaderReason::ShortPacket, ExitCode::Usage, "a packet has at least 4 bytes"},
    {LoaderReason::PacketRefused, ExitCode::Refused, "the module refused a packet"},
    {LoaderReason::CrcDiffers, ExitCode::Refused, "what it holds differs from the file"},
    {LoaderReason::FileNotOpened, ExitCode::File, "it can't be opened"},
    {LoaderReason::FileTooLarge, ExitCode::File, "it is larger than 2 GiB"},
    {LoaderReason::NoMemory, ExitCode::File, "there isn't enough memory for it"},
    {LoaderReason::FileCutShort, ExitCode::File, "it can't be read to its end"},
};
} // namespace

Failure upgrade_failure(const UpgradeReport& report, const QString& file,
                        const UpgradeSettings& settings)
{
    const LoaderOutcome& outcome = report.outcome;
    const auto& [reason, code, why] =
        *std::find_if(std::begin(REASONS), std::end(REASONS),
                      [&](const auto& row) { return row.reason == outcome.reason; });
    if (outcome.ending == LoaderEnding::Aborted)
        return {ExitCode::Interrupted, "the upgrade was stopped",
                QString("The device wasn't restarted and may wait in its boot code. ") + RERUN};
    if (outcome.ending == LoaderEnding::WrongFirmware)
        return {ExitCode::Refused,
                QStringLiteral("wrong firmware (%1) for module (%2)")
                    .arg(QFileInfo(file).fileName(), outcome.module_name),
                "The file's name begins with the module's name and an underscore. Take the file "
                "that belongs to this module."};
    if (outcome.ending == LoaderEnding::FileNotRead)
        return {code, "the file " + file + ": " + why, {}};
    const Failure lost = no_answer(report.link, "the upgrade failed", {});
    if (lost.code == ExitCode::Link)
        return {lost.code, lost.what, lost.advice + ' ' + RERUN};
    if (reason == LoaderReason::ZeroSize)
        return {code, QString("the device can't be upgraded: ") + why, {}};

    switch (outcome.ending) {
    case LoaderEnding::NoInfo:
        return no_answer(report.link, "the device doesn't say what it is",
                         "Is the device on? Check the port, its rate and format, and "
                         "--frame; -v shows every exchange.");
    case LoaderEnding::NoBootInfo:
        return no_answer(report.link, "the device was told to start its boot code",
                         "It may take longer: try again with a --reset-wait of 5000.");
    case LoaderEnding::NotInBoot:
        return {ExitCode::Refused, "the device didn't start its boot code",
                "Try again; a longer --reset-wait may help."};
    case LoaderEnding::VerifyFailed:
        return {code, QString("the device doesn't say that it holds the file: ") + why,
                QString("It stays in its boot code. ") + RERUN};
    default:
        break;
    }
    if (outcome.refusals == std::uint32_t(settings.attempts))
        return {ExitCode::Refused,
                QStringLiteral("the module refused all %1 attempts to send the packet at offset %2")
                    .arg(outcome.refusals)
                    .arg(outcome.offset),
                QStringLiteral("Maybe the file (%1 bytes) is larger than the module's memory. If "
                               "it isn't, try again with --packet 256.")
                    .arg(report.file_size)};
    return {code, QString("the transfer failed: ") + why,
            QString(RERUN) + " On a bad line, --packet 256 and a longer --timeout help."};
}
