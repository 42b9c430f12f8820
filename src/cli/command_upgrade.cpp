// tarnwickctl upgrade: new firmware for a module.
#include "upgrade.h"

namespace {
UpgradeSettings settings_of(const Invocation& invocation)
{
    constexpr int LONGEST_WAIT_MS = 600'000;
    UpgradeSettings settings;
    settings.file = invocation.argument(0, "FILE");
    invocation.expect_at_most(1);
    settings.packet = unsigned(invocation.number("packet", 4, 65535));
    settings.retries = unsigned(invocation.number("retries", 1, 1000));
    settings.interval_ms = unsigned(invocation.number("interval", 0, LONGEST_WAIT_MS));
    settings.reset_wait_ms = unsigned(invocation.number("reset-wait", 0, LONGEST_WAIT_MS));
    settings.verify_wait_ms = unsigned(invocation.number("verify-wait", 0, LONGEST_WAIT_MS));
    return settings;
}

void run_upgrade(Invocation& invocation)
{
    const UpgradeSettings settings = settings_of(invocation);
    check_firmware_file(settings.file);
    Connection connection(invocation);
    const UpgradeResult result =
        Upgrade(settings, connection, invocation.console, invocation.interrupts).run();
    invocation.console.line(QStringLiteral("%1: %2 bytes sent and verified in %3 s")
                                .arg(settings.file, QString::number(result.file_size),
                                     QString::number(double(result.elapsed_ms) / 1000, 'f', 1)));
    invocation.console.result({{"result", "upgraded"},
                               {"file", settings.file},
                               {"bytes", result.file_size},
                               {"wire_bytes_sent", qint64(connection.stack.link().bytes_sent())},
                               {"seconds", double(result.elapsed_ms) / 1000},
                               {"device", result.soft_info},
                               {"hard_info", result.hard_info}});
}
} // namespace

QList<Command> upgrade_commands()
{
    return {
        {"upgrade",
         "FILE",
         "Put new firmware into a module.",
         "Puts new firmware into a module: starts its boot code, sends the pages of the file\n"
         "that differ from what the module holds, has the whole file verified, and restarts\n"
         "the module. The name of the file begins with the module's name and an underscore,\n"
         "as in M1_2.3.bin.\n\n"
         "Stopped or failed, it can simply be run again: pages that have arrived aren't sent\n"
         "a second time, and until the file is verified the module stays in its boot code.\n\n"
         "  tarnwickctl upgrade M1_2.3.bin --link serial:/dev/ttyUSB0 --frame crc16\n"
         "  tarnwickctl upgrade M1_2.3.bin --link tcp:10.0.0.5:4001 --frame rtu:1 --json",
         {{"packet", "Most bytes of the file in one packet; the device may take fewer.", "bytes",
           "1024"},
          {"retries", "How often a packet or a question is sent before giving up.", "count", "5"},
          {"interval", "Pause after each packet, for slow devices.", "ms", "0"},
          {"reset-wait", "How long the device takes to start its boot code.", "ms", "2000"},
          {"verify-wait", "How long the device takes to verify the whole file.", "ms", "1000"}},
         Needs::Stack,
         run_upgrade}};
}
