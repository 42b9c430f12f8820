// tarnwickctl upgrade: new firmware for a module, or for several at the same time.
#include "cli/progressline.h"
#include "cli/session.h"
#include "cli/upgradeline.h"

#include <QFileInfo>
#include <algorithm>

namespace {
UpgradeSettings settings_of(const Invocation& invocation)
{
    constexpr int LONGEST_WAIT_MS = 600'000;
    UpgradeSettings settings;
    settings.packet = int(invocation.number("packet", 4, 65535));
    settings.attempts = int(invocation.number("retries", 1, 1000));
    settings.interval_ms = int(invocation.number("interval", 0, LONGEST_WAIT_MS));
    settings.reset_wait_ms = int(invocation.number("reset-wait", 0, LONGEST_WAIT_MS));
    settings.verify_wait_ms = int(invocation.number("verify-wait", 0, LONGEST_WAIT_MS));
    return settings;
}

// Throws Failure when there is no such file to read.
void check_firmware_file(const QString& file)
{
    const QFileInfo info(file);
    if (!info.exists())
        throw Failure{ExitCode::File, "there is no file " + file, "Check its name."};
    if (info.isDir())
        throw Failure{ExitCode::File, file + " is a folder", "Name a firmware file in it."};
    if (!info.isReadable())
        throw Failure{ExitCode::File, "the file " + file + " can't be read", "Check its rights."};
    // A module would take it: nothing to send, and nothing to verify.
    if (info.isFile() && info.size() == 0)
        throw Failure{ExitCode::File, "the file " + file + " is empty",
                      "Look how it was made; the module was left alone."};
}

void check_different(QStringList links)
{
    links.sort();
    const auto twice = std::adjacent_find(links.cbegin(), links.cend());
    if (twice != links.cend())
        throw usage_failure("--link " + *twice + " is there twice",
                            "Each module has a link of its own.");
}

void upgrade_one(const StackDescription& stack, const QString& file,
                 const UpgradeSettings& settings, ExchangeSink& log, Invocation& invocation)
{
    Console& console = invocation.console;
    const auto show = [&console](const Progress& progress) {
        console.progress(transfer_text(progress), progress.percent());
    };
    const auto note = [&console](const QString& text) { console.note(text); };
    ModuleUpgrade module(stack, file, settings, log, {note, show});
    run_all({&module}, invocation.interrupts);
    const ModuleEnding& ending = module.ending();
    if (ending.failure)
        throw Failure(*ending.failure);
    console.end_progress();
    const UpgradeReport& report = ending.report;
    console.line(QStringLiteral("%1: %2 bytes sent and verified in %3 s")
                     .arg(file, QString::number(report.file_size),
                          QString::number(double(report.elapsed_ms) / 1000, 'f', 1)));
    console.result({{"result", "upgraded"},
                    {"file", file},
                    {"bytes", report.file_size},
                    {"wire_bytes_sent", qint64(report.wire_bytes)},
                    {"seconds", double(report.elapsed_ms) / 1000},
                    {"device", ending.soft_info},
                    {"hard_info", ending.hard_info}});
}

void run_upgrade(Invocation& invocation)
{
    const QString file = invocation.argument(0, "FILE");
    invocation.expect_at_most(1);
    const UpgradeSettings settings = settings_of(invocation);
    check_firmware_file(file);
    ExchangeLog log(invocation.console, invocation.has("verbose"), invocation.text("log"));
    const QVector<StackDescription> stacks = stack_descriptions(invocation);
    const QStringList links = invocation.texts("link");
    check_different(links);
    RecordFile record_file(invocation);
    if (invocation.has("verbose"))
        invocation.console.use_plain_progress();
    if (stacks.size() == 1) {
        LinkRecord record(record_file, stacks[0].link, links[0], log);
        return upgrade_one(stacks[0], file, settings, record, invocation);
    }
    UpgradeLine(stacks, links, file, settings, {log, record_file, invocation.console})
        .run(invocation.interrupts);
}
} // namespace

QList<Command> upgrade_commands()
{
    return {
        {"upgrade",
         "FILE",
         "Put new firmware into a module, or into several.",
         "Puts new firmware into a module: starts its boot code, sends the pages of the file\n"
         "that differ from what the module holds, has the whole file verified, and restarts\n"
         "the module. The name of the file begins with the module's name and an underscore,\n"
         "as in M1_2.3.bin.\n\n"
         "Stopped or failed, it can simply be run again: pages that have arrived aren't sent\n"
         "a second time, and until the file is verified the module stays in its boot code.\n\n"
         "With several --link the modules at all of them are upgraded at the same time, and a\n"
         "table says how each has ended. The exit code is that of the first link that failed.\n\n"
         "  tarnwickctl upgrade M1_2.3.bin --link serial:/dev/ttyUSB0 --frame crc16\n"
         "  tarnwickctl upgrade M1_2.3.bin --link tcp:10.0.0.5:4001 --frame rtu:1 --json\n"
         "  tarnwickctl upgrade M1_2.3.bin --link serial:ttyUSB0 --link serial:ttyUSB1 --frame "
         "crc16",
         {{"packet", "Most bytes of the file in one packet; the device may take fewer.", "bytes",
           "1024"},
          {"retries", "How often a packet or a question is sent before giving up.", "count", "5"},
          {"interval", "Pause after each packet, for slow devices.", "ms", "0"},
          {"reset-wait", "How long the device takes to start its boot code.", "ms", "2000"},
          {"verify-wait", "How long the device takes to verify the whole file.", "ms", "1000"}},
         Needs::Stack,
         run_upgrade}};
}
