#include "cli/command.h"

#include "cli/failure.h"
#include "cli/session.h"

namespace {
const char OVERVIEW_HEAD[] =
    "tarnwickctl talks to radio modules over a serial port or the network: it upgrades their\n"
    "firmware, reads and sets their settings, and searches for devices.\n"
    "\n"
    "Usage: tarnwickctl COMMAND [options]      tarnwickctl COMMAND --help\n";

const char OVERVIEW_TAIL[] =
    "--link and --frame say how a device is connected; see `tarnwickctl help stack`:\n"
    "  tarnwickctl upgrade M1_2.3.bin --link serial:/dev/ttyUSB0,115200,8N1 --frame rtu:1\n"
    "  tarnwickctl cnet search --link tcp:10.0.0.5:4001 --channels 9-30 --rates 0-2\n"
    "No device at hand? `tarnwick-sim boot` plays one.\n";

const char STACK_HELP[] =
    "A device is reached over a link, and through framers on top of that link.\n"
    "\n"
    "--link LINK\n"
    "  serial:PORT[,BAUD[,FORMAT[,FLOW]]]\n"
    "      A serial port; 115200,8N1,none unless given. FORMAT is data bits 5 to 8,\n"
    "      parity N O E M S, stop bits 1, 1.5 or 2. FLOW is none, rtscts or xonxoff.\n"
    "      `tarnwickctl ports` lists the ports; the last part of a port's path is enough.\n"
    "  tcp:HOST:PORT, udp:HOST:PORT\n"
    "      A TCP connection or UDP datagrams. HOST is a name, an IPv4 address, or an IPv6\n"
    "      address in brackets: tcp:[fe80::1]:4001.\n"
    "  rawtcp:ADDRESS:PORT, rawudp:ADDRESS:PORT\n"
    "      The same on the system's sockets. ADDRESS is IPv4, as in 10.0.0.5. The framer dorv\n"
    "      needs one of these in a network.\n"
    "  broadcast:PORT\n"
    "      UDP datagrams to everybody on the local network.\n"
    "\n"
    "--frame FRAMER[+FRAMER...]     the one nearest to the link first; none if not given\n"
    "  none            the payload as it is\n"
    "  crc16           payload, CRC-16\n"
    "  rtu:ADDRESS     address 0 to 255, payload, CRC-16\n"
    "  chan:PREFIX     a prefix of 1 to 16 bytes in hexadecimal, payload\n"
    "  cnet:TARGET     frames to a device on the air; 4 hexadecimal digits\n"
    "  rwlt            payload between 0xAB and 0xBA\n"
    "  dorv[:MODE]     payload in AT send commands; MODE is mac, pmac, radio, data or\n"
    "                  raw; radio if not given\n"
    "\n"
    "Examples\n"
    "  --link serial:/dev/ttyUSB0,9600,8E1 --frame rtu:17\n"
    "  --link tcp:gateway.local:4001 --frame crc16+chan:05\n";

// The parser's own help leaves the defaults out.
QList<QCommandLineOption> with_defaults_shown(QList<QCommandLineOption> options)
{
    for (QCommandLineOption& option : options) {
        const QString value = option.defaultValues().join(' ');
        if (!value.isEmpty())
            option.setDescription(option.description() + " [" + value + ']');
    }
    return options;
}

QString command_lines(const QList<Command>& commands, const QString& family)
{
    constexpr int COLUMN = 20;
    QString text;
    for (const Command& command : commands) {
        if (family.isEmpty() || command.name.startsWith(family + ' '))
            text += "  " + command.name.leftJustified(COLUMN - 3) + ' ' + command.summary + '\n';
    }
    return text;
}

QString exit_code_lines()
{
    QString text;
    for (const ExitCodeRow& row : EXIT_CODES)
        text += QStringLiteral("  %1  %2\n").arg(int(row.code), 3).arg(row.meaning);
    return text;
}

QString link_usage(Needs needs)
{
    if (needs == Needs::Nothing)
        return {};
    return needs == Needs::StackOrNothing ? " [--link LINK]" : " --link LINK";
}
} // namespace

QList<QCommandLineOption> options_of(const Command& command)
{
    QList<QCommandLineOption> options = command.options;
    if (command.needs != Needs::Nothing)
        options += stack_options(command.needs);
    return with_defaults_shown(options) +
           QList<QCommandLineOption>{{"json", "Print the result as JSON, for scripts."},
                                     {{"h", "help"}, "Show this text."}};
}

QString overview(const QList<Command>& commands)
{
    return QString(OVERVIEW_HEAD) + "\nCommands:\n" + command_lines(commands, {}) + '\n' +
           OVERVIEW_TAIL + "\nExit codes:\n" + exit_code_lines();
}

QString family_help(const QList<Command>& commands, const QString& family)
{
    return "Usage: tarnwickctl " + family + " COMMAND [options]\n\nCommands:\n" +
           command_lines(commands, family);
}

QString command_help(const Command& command)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addOptions(options_of(command));
    // The parser knows options alone; the command's own form of the usage line takes its place.
    QString text = parser.helpText();
    text.remove(0, text.indexOf('\n'));
    const QString arguments = command.arguments.isEmpty() ? QString() : ' ' + command.arguments;
    return "Usage: tarnwickctl " + command.name + arguments + link_usage(command.needs) +
           " [options]\n" + text;
}

QString stack_help()
{
    return STACK_HELP;
}
