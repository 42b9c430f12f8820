#include "simulator/options.h"

#include "simulator/readoptions.h"

namespace {
const char OVERVIEW[] =
    "tarnwick-sim plays a device on a virtual serial port, which tarnwick lists like a real one.\n"
    "\n"
    "Usage: tarnwick-sim DEVICE [FILE] [options]\n"
    "       tarnwick-sim help [DEVICE]\n"
    "       tarnwick-sim --version\n"
    "\n"
    "Devices:\n"
    "  echo   sends every byte back\n"
    "  talk   talks without being asked: lines, bytes or hexadecimal text at a rate\n"
    "  boot   a module whose firmware can be replaced through its boot code\n"
    "  cnet   a radio device with others in reach, to be configured and searched for\n"
    "  dorv   a radio module with AT commands that remembers its settings\n"
    "  replay a capture FILE: what was received comes again at the same times\n"
    "  answer a capture FILE: requests get the answers that the recorded device gave\n"
    "\n"
    "It prints the path of its port, runs until Ctrl-C, and takes the port away with it.\n"
    "\n"
    "Examples:\n"
    "  tarnwick-sim echo --baud 115200\n"
    "  tarnwick-sim boot --image rom.bin --module M1 --frame rtu:1 --verbose\n"
    "  tarnwick-sim boot --listen 4001 --drop 0.01 --double 0.01 --seed 7\n"
    "  tarnwick-sim cnet --device 12,1,0x1234 --device 30,2,0x1235\n"
    "  tarnwick-sim dorv --settings module.txt\n"
    "  tarnwick-sim answer field.pcapng --verbose\n";

const QList<QCommandLineOption> COMMON = {
    {"name", "Name of the port in the folder of virtual ports; the device's kind if not given.",
     "name"},
    {"listen",
     "Serve a TCP port of this machine instead of a virtual serial port; 0 takes a free one.",
     "port"},
    {"baud", "Carry bytes as slowly as a line of that rate does; 0 for no delay.", "bits/s", "0"},
    {"seed", "Start of all chances and texts: the same seed gives the same run.", "number", "1"},
    {"drop", "Chance, 0 to 1, that a frame (echo, talk and replay: a byte) is lost.", "chance",
     "0"},
    {"corrupt", "Chance that one bit of a frame (echo, talk and replay: a byte) is turned.",
     "chance", "0"},
    {"double", "Chance that a frame (echo, talk and replay: a byte) arrives twice.", "chance", "0"},
    {"reorder", "Chance that a frame (echo, talk and replay: a byte) arrives after the next one.",
     "chance", "0"},
    {"delay", "Hold answers back for this time.", "ms", "0"},
    {"delay-chance", "Chance that --delay holds back an answer.", "chance", "1"},
    {"silent-after", "Fall silent after so many frames (echo, talk and replay: bytes).", "count",
     "-1"},
};

const QList<QCommandLineOption> TALK = {
    {"rate",
     "Lines a second, or bytes a second with --binary and --hex; 0 for as fast as they are "
     "taken, else at least 0.001.",
     "rate", "10"},
    {"line-length", "Bytes in a line, its CR LF included.", "bytes", "72"},
    {"binary", "Bytes of all values instead of lines."},
    {"hex", "Pairs of hexadecimal digits without line breaks instead of lines."},
    {"size", "Send so many bytes at a time, with silence after them.", "bytes", "0"},
    {"bytes", "Stop after so many bytes.", "count", "-1"},
};

const QList<QCommandLineOption> MODULE = {
    {"verbose", "Tell on stderr what the device hears, does and sends."},
    {"start-time", "How long the device hears nothing after a reset.", "ms", "50"},
    {"reboot-after", "The device's supply fails for a moment at that request.", "count", "-1"},
    {"cut-after", "The line is cut, and can be opened again, at that request.", "count", "-1"},
};

const QList<QCommandLineOption> BOOT = {
    {"image", "File that holds the firmware; made if missing. Without it, memory alone does.",
     "file"},
    {"frame", "Frame around requests and replies: none, crc16, rtu:ADDRESS, chan:HEX or rwlt.",
     "frame", "crc16"},
    {"module", "Name of the module; an empty one is not reported.", "text", "M1"},
    {"firmware", "Version that the module reports: up to five numbers of 0 to 255.", "a.b.c.d.e",
     "1.0.0.0.0"},
    {"hard-info", "Bytes that follow the name in the module's answer.", "hex"},
    {"page", "Bytes that are checked at a time.", "bytes", "4096"},
    {"mtu", "Most bytes in a packet of data.", "bytes", "1024"},
    {"rom", "Bytes of memory for the firmware.", "bytes", "1048576"},
    {"boot", "Start in the boot code, as with no firmware in place."},
};

const QList<QCommandLineOption> CNET = {
    {"address", "Short address of the device at the line.", "address", "0x0001"},
    {"devices", "How many others are in reach, on channels and rates drawn from --seed.", "count",
     "6"},
    {"device",
     "One device in reach: channel 9 to 30, rate 0 to 2, short address. Can be given again; "
     "then --devices does not count.",
     "channel,rate,address"},
};

const QList<QCommandLineOption> DORV = {
    {"settings", "File that keeps the settings from one run to the next.", "file"},
    {"partner", "A module in reach sends every payload back."},
    {"neighbours", "So many modules in reach announce themselves, over and over.", "count", "0"},
};

const QCommandLineOption CAPTURE_PORT = {
    "port", "The port in the capture, by its name or the end of it; needed if there are several.",
    "name"};

const QList<QCommandLineOption> REPLAY = {
    CAPTURE_PORT,
    {"speed", "Play so many times as fast; 0 for as fast as it is taken.", "factor", "1"},
    {"most-silence", "Cut longer silences to this; 0 for none.", "ms", "0"},
};

const QList<QCommandLineOption> ANSWER = {
    CAPTURE_PORT,
    {"gap", "A silence that ends a request.", "ms", "100"},
    {"delays", "Answers come after the recorded time, not at once."},
    {"near", "Give unknown requests the answer to the nearest one."},
};

struct DeviceOptions
{
    const char* name = nullptr;
    const char* what = nullptr;
    QList<QCommandLineOption> own;
    void (*read)(const OptionValues&, Options&) = nullptr;
    bool of_capture = false; // takes its FILE
};

const DeviceOptions DEVICES[] = {
    {"echo", "A device that sends every byte back.", {}, [](const OptionValues&, Options&) {}},
    {"talk", "A device that talks without being asked.", TALK, read_talk},
    {"boot", "A module whose firmware can be replaced through its boot code.", BOOT + MODULE,
     read_boot},
    {"cnet", "A cnet radio device with others in reach.", CNET + MODULE, read_cnet},
    {"dorv", "A Dorv radio module with AT commands.", DORV + MODULE, read_dorv},
    {"replay", "What was received in a capture comes again at the same times.", REPLAY, read_replay,
     true},
    {"answer", "Requests get the answers that the device gave in a capture.", ANSWER + MODULE,
     read_answer, true},
};

const char NEVER_COUNTED[] = "-1";

QList<QCommandLineOption> with_defaults_added(QList<QCommandLineOption> options)
{
    for (QCommandLineOption& option : options) {
        const QString value = option.defaultValues().value(0);
        if (value == NEVER_COUNTED)
            option.setDescription(option.description() + " Never if not given.");
        else if (!value.isEmpty())
            option.setDescription(option.description() + " [" + value + "]");
    }
    return options;
}

// The parser would begin with the path by which the program was called.
QString help_text(const QCommandLineParser& parser, const DeviceOptions& device)
{
    return QStringLiteral("Usage: tarnwick-sim %1 %2[options]\n")
               .arg(device.name, device.of_capture ? "FILE " : "") +
           parser.helpText().section('\n', 1);
}

const DeviceOptions* find_device(const QString& name)
{
    for (const DeviceOptions& device : DEVICES) {
        if (name == QLatin1String(device.name))
            return &device;
    }
    return nullptr;
}

ParsedOptions refused(const QString& why)
{
    return {{}, "tarnwick-sim: " + why + "\n", false};
}

ParsedOptions parse_device_options(const DeviceOptions& device, const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(device.what);
    parser.addOptions(with_defaults_added(device.own + COMMON));
    const QCommandLineOption help({"h", "help"}, "Show this text.");
    parser.addOption(help);
    const bool known =
        parser.parse(QStringList(QString("tarnwick-sim %1").arg(device.name)) + arguments);
    if (parser.isSet(help))
        return {{}, help_text(parser, device), true};
    if (!known)
        return refused(parser.errorText());
    QStringList words = parser.positionalArguments();
    ParsedOptions parsed;
    if (device.of_capture) {
        if (words.isEmpty())
            return refused("name the capture, as in tarnwick-sim " + QString(device.name) +
                           " session.pcapng");
        parsed.options.capture = words.takeFirst();
    }
    if (!words.isEmpty())
        return refused("unexpected: " + words.join(' '));
    parsed.options.device = device.name;
    try {
        read_common(OptionValues(parser), parsed.options);
        device.read(OptionValues(parser), parsed.options);
    } catch (const OptionMistake& mistake) {
        return refused(mistake.text);
    }
    return parsed;
}
} // namespace

ParsedOptions parse_options(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    const bool asks = name == "help" || name == "--help" || name == "-h";
    if (name == "--version")
        return {{}, "tarnwick-sim " TARNWICK_VERSION "\n", true};
    if (name.isEmpty() || (asks && arguments.size() < 2))
        return {{}, OVERVIEW, asks};
    const QString wanted = asks ? arguments.at(1) : name;
    const DeviceOptions* const device = find_device(wanted);
    if (!device)
        return refused("no such device: " + wanted + "\n\n" + OVERVIEW);
    return parse_device_options(*device, asks ? QStringList("--help") : arguments.mid(1));
}
