#include "simulator/options.h"

#include "simulator/optionvalues.h"

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

void read_common(const OptionValues& values, Options& options)
{
    constexpr std::int64_t MOST_BAUD = 100'000'000;
    options.name = values.has("name") ? values.text("name") : options.device;
    if (values.has("listen"))
        options.listen_port = int(values.integer("listen", 0, 65535));
    options.baud = int(values.integer("baud", 0, MOST_BAUD));
    FaultSettings& faults = options.faults;
    faults.drop = values.real("drop", 0, 1);
    faults.corrupt = values.real("corrupt", 0, 1);
    faults.twice = values.real("double", 0, 1);
    faults.reorder = values.real("reorder", 0, 1);
    faults.delay = std::chrono::milliseconds(values.integer("delay", 0, 3'600'000));
    faults.delay_chance = values.real("delay-chance", 0, 1);
    faults.silent_after = values.integer("silent-after", -1, INT64_MAX);
    faults.seed = std::uint64_t(values.integer("seed", 0, INT64_MAX));
}

void read_talk(const OptionValues& values, Options& options)
{
    TalkSettings& talk = options.talk;
    if (values.has("binary") && values.has("hex"))
        throw OptionMistake{"--binary and --hex: choose one of them"};
    talk.form = values.has("binary") ? TalkForm::Binary
                : values.has("hex")  ? TalkForm::Hex
                                     : TalkForm::Lines;
    constexpr double SLOWEST_RATE = 0.001; // else a time of millions of bytes has no number
    talk.rate = values.real("rate", 0, 1e9);
    if (talk.rate > 0 && talk.rate < SLOWEST_RATE)
        throw OptionMistake{
            QStringLiteral("--rate %1: 0, or a number from %2 to 1000000000, is needed")
                .arg(values.text("rate"), QString::number(SLOWEST_RATE))};
    talk.line_length = int(values.integer("line-length", SHORTEST_LINE, 1'000'000));
    talk.size = int(values.integer("size", 0, 1'000'000));
    talk.bytes = values.integer("bytes", -1, INT64_MAX);
    talk.seed = options.faults.seed;
}

void read_module(const OptionValues& values, Options& options)
{
    constexpr std::int64_t LONGEST_START = 3'600'000;
    options.verbose = values.has("verbose");
    options.exchange.baud = options.baud;
    options.exchange.start_time =
        std::chrono::milliseconds(values.integer("start-time", 0, LONGEST_START));
    options.exchange.reboot_after = values.integer("reboot-after", -1, INT64_MAX);
    options.exchange.cut_after = values.integer("cut-after", -1, INT64_MAX);
}

std::array<std::uint8_t, 5> read_version(const QString& text)
{
    std::array<std::uint8_t, 5> version = {};
    const QStringList parts = text.split('.');
    bool ok = parts.size() <= int(version.size());
    for (int i = 0; ok && i < parts.size(); ++i) {
        const std::uint32_t part = parts[i].toUInt(&ok);
        ok = ok && part <= UINT8_MAX;
        version[size_t(i)] = std::uint8_t(part);
    }
    if (!ok)
        throw OptionMistake{
            QStringLiteral("--firmware %1: up to five numbers of 0 to 255, split by "
                           "points, are needed")
                .arg(text)};
    return version;
}

QByteArray read_hex(const char* name, const QString& text)
{
    const QByteArray digits = text.toLatin1().replace(' ', "").toLower();
    QByteArray bytes = QByteArray::fromHex(digits);
    if (bytes.toHex() != digits)
        throw OptionMistake{
            QStringLiteral("--%1 %2: hexadecimal digits, two for each byte, are needed")
                .arg(QLatin1String(name), text)};
    return bytes;
}

void read_name_and_hard_info(const OptionValues& values, BootSettings& boot)
{
    const QString name = values.text("module");
    boot.name = name.toLatin1();
    if (QString::fromLatin1(boot.name) != name || boot.name.contains('\0'))
        throw OptionMistake{
            QStringLiteral("--module %1: the module reports its name in Latin-1, and that "
                           "doesn't have all of these characters")
                .arg(name)};
    boot.hard_info = read_hex("hard-info", values.text("hard-info"));
    const int size = int(boot.name.size() + boot.hard_info.size());
    if (size > BOOT_RECORD_ROOM)
        throw OptionMistake{
            QStringLiteral("--module and --hard-info: they take %1 bytes, and the record "
                           "that the module answers with has room for %2")
                .arg(QString::number(size), QString::number(BOOT_RECORD_ROOM))};
}

void read_boot(const OptionValues& values, Options& options)
{
    read_module(values, options);
    BootSettings& boot = options.boot;
    const std::optional<Framing> framing = Framing::named(values.text("frame"));
    if (!framing)
        throw OptionMistake{
            QStringLiteral("--frame %1: none, crc16, rtu:ADDRESS (0 to 255), chan:HEX (up "
                           "to 16 bytes) or rwlt is needed")
                .arg(values.text("frame"))};
    boot.framing = *framing;
    boot.image = values.text("image");
    read_name_and_hard_info(values, boot);
    boot.version = read_version(values.text("firmware"));
    boot.page = std::uint16_t(values.integer("page", 0, UINT16_MAX));
    boot.mtu = std::uint16_t(values.integer("mtu", 0, UINT16_MAX));
    boot.rom_size = int(values.integer("rom", 1, 1 << 30));
    boot.in_boot = values.has("boot");
}

bool read_address(const QString& text, std::uint16_t& address)
{
    bool ok = false;
    address = text.toUShort(&ok, 0);
    return ok;
}

CnetDevice read_neighbour(const QString& text)
{
    const QStringList fields = text.split(',');
    const int channel = fields.value(0).toInt();
    bool ok = false;
    const int rate = fields.value(1).toInt(&ok);
    std::uint16_t address = 0;
    if (!ok || fields.size() != 3 || channel < 9 || channel > 30 || rate < 0 || rate > 2 ||
        !read_address(fields.value(2), address))
        throw OptionMistake{
            QStringLiteral("--device %1: a channel of 9 to 30, a rate of 0 to 2 and an "
                           "address are needed, as in 12,1,0x1234")
                .arg(text)};
    return cnet_device(channel, rate, address);
}

void read_cnet(const OptionValues& values, Options& options)
{
    read_module(values, options);
    std::uint16_t address = 0;
    if (!read_address(values.text("address"), address))
        throw OptionMistake{QStringLiteral("--address %1: a number from 0 to 0xFFFF is needed")
                                .arg(values.text("address"))};
    options.cnet_local = cnet_device(9, 0, address);
    for (const QString& text : values.texts("device"))
        options.cnet_neighbours += read_neighbour(text);
    if (options.cnet_neighbours.isEmpty())
        options.cnet_neighbours =
            cnet_neighbourhood(int(values.integer("devices", 0, 1000)), options.faults.seed);
}

void read_dorv(const OptionValues& values, Options& options)
{
    read_module(values, options);
    options.dorv.file = values.text("settings");
    options.dorv.partner = values.has("partner");
    options.dorv.neighbours = int(values.integer("neighbours", 0, 1000));
}

void read_replay(const OptionValues& values, Options& options)
{
    options.capture_port = values.text("port");
    options.replay.speed = values.real("speed", 0, 1e6);
    constexpr double SLOWEST = 0.001; // else a silence of years has no number
    if (options.replay.speed > 0 && options.replay.speed < SLOWEST)
        throw OptionMistake{
            QStringLiteral("--speed %1: 0, or a number from %2 to 1000000, is needed")
                .arg(values.text("speed"), QString::number(SLOWEST))};
    options.replay.most_silence =
        std::chrono::milliseconds(values.integer("most-silence", 0, INT32_MAX));
}

void read_answer(const OptionValues& values, Options& options)
{
    read_module(values, options);
    options.capture_port = values.text("port");
    options.answer.gap = std::chrono::milliseconds(values.integer("gap", 1, 3'600'000));
    options.answer.delays = values.has("delays");
    options.answer.near = values.has("near");
    options.exchange.pause = options.answer.gap;
}

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
