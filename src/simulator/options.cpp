#include "options.h"

#include <QCommandLineParser>

namespace {
struct Mistake
{
    QString text;
};

const char OVERVIEW[] =
    "tarnwick-sim plays a device on a virtual serial port, which tarnwick lists like a real one.\n"
    "\n"
    "Usage: tarnwick-sim DEVICE [options]      tarnwick-sim DEVICE --help\n"
    "\n"
    "Devices:\n"
    "  echo   sends every byte back\n"
    "  talk   talks without being asked: lines, bytes or hexadecimal text at a rate\n"
    "\n"
    "It prints the path of its port, runs until Ctrl-C, and takes the port away with it.\n";

const QList<QCommandLineOption> COMMON = {
    {"name", "Name of the port in the folder of virtual ports; the device's kind if not given.",
     "name"},
    {"listen",
     "Serve a TCP port of this machine instead of a virtual serial port; 0 takes a free one.",
     "port"},
    {"baud", "Carry bytes as slowly as a line of that rate does; 0 for no delay.", "bits/s", "0"},
    {"seed", "Start of all chances and texts: the same seed gives the same run.", "number", "1"},
    {"drop", "Chance, 0 to 1, that a frame (echo and talk: a byte) is lost.", "chance", "0"},
    {"corrupt", "Chance that one bit of a frame (echo and talk: a byte) is turned.", "chance", "0"},
    {"delay", "Hold answers back for this time.", "ms", "0"},
    {"delay-chance", "Chance that --delay holds back an answer.", "chance", "1"},
    {"silent-after", "Fall silent after so many frames (echo and talk: bytes).", "count", "-1"},
};

const QList<QCommandLineOption> TALK = {
    {"rate",
     "Lines a second, or bytes a second with --binary and --hex; 0 for as fast as they are "
     "taken.",
     "rate", "10"},
    {"line-length", "Bytes in a line, its CR LF included.", "bytes", "72"},
    {"binary", "Bytes of all values instead of lines."},
    {"hex", "Pairs of hexadecimal digits without line breaks instead of lines."},
    {"size", "Send so many bytes at a time, with silence behind them.", "bytes", "0"},
    {"bytes", "Stop after so many bytes.", "count", "-1"},
};

class Values
{
public:
    explicit Values(const QCommandLineParser& parser)
        : parser(parser)
    {
    }

    qint64 integer(const char* name, qint64 least, qint64 most) const
    {
        bool ok = false;
        const qint64 value = parser.value(name).toLongLong(&ok);
        return in_range(name, ok, value, least, most);
    }

    double real(const char* name, double least, double most) const
    {
        bool ok = false;
        const double value = parser.value(name).toDouble(&ok);
        return in_range(name, ok, value, least, most);
    }

    bool has(const char* name) const { return parser.isSet(name); }
    QString text(const char* name) const { return parser.value(name); }

private:
    template <typename Number>
    Number in_range(const char* name, bool ok, Number value, Number least, Number most) const
    {
        if (!ok || !(value >= least && value <= most))
            throw Mistake{QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                              .arg(QLatin1String(name), parser.value(name))
                              .arg(least)
                              .arg(most)};
        return value;
    }

    const QCommandLineParser& parser;
};

void read_common(const Values& values, Options& options)
{
    constexpr qint64 MOST_BAUD = 100'000'000;
    options.name = values.has("name") ? values.text("name") : options.device;
    if (values.has("listen"))
        options.listen_port = int(values.integer("listen", 0, 65535));
    options.baud = int(values.integer("baud", 0, MOST_BAUD));
    FaultSettings& faults = options.faults;
    faults.drop = values.real("drop", 0, 1);
    faults.corrupt = values.real("corrupt", 0, 1);
    faults.delay = std::chrono::milliseconds(values.integer("delay", 0, 3'600'000));
    faults.delay_chance = values.real("delay-chance", 0, 1);
    faults.silent_after = values.integer("silent-after", -1, INT64_MAX);
    faults.seed = quint64(values.integer("seed", 0, INT64_MAX));
}

void read_talk(const Values& values, Options& options)
{
    TalkSettings& talk = options.talk;
    if (values.has("binary") && values.has("hex"))
        throw Mistake{"--binary and --hex: choose one of them"};
    talk.form = values.has("binary") ? TalkForm::Binary
                : values.has("hex")  ? TalkForm::Hex
                                     : TalkForm::Lines;
    talk.rate = values.real("rate", 0, 1e9);
    talk.line_length = int(values.integer("line-length", SHORTEST_LINE, 1'000'000));
    talk.size = int(values.integer("size", 0, 1'000'000));
    talk.bytes = values.integer("bytes", -1, INT64_MAX);
    talk.seed = options.faults.seed;
}

struct DeviceOptions
{
    const char* name;
    const char* what;
    QList<QCommandLineOption> own;
    void (*read)(const Values&, Options&);
};

const DeviceOptions DEVICES[] = {
    {"echo", "A device that sends every byte back.", {}, [](const Values&, Options&) {}},
    {"talk", "A device that talks without being asked.", TALK, read_talk},
};

const DeviceOptions* find_device(const QString& name)
{
    for (const DeviceOptions& device : DEVICES) {
        if (name == QLatin1String(device.name))
            return &device;
    }
    return nullptr;
}
} // namespace

ParsedOptions parse_options(const QStringList& arguments)
{
    ParsedOptions parsed;
    const QString name = arguments.value(0);
    if (name == "--help" || name == "-h")
        return {{}, OVERVIEW, true};
    const DeviceOptions* device = find_device(name);
    if (!device)
        return {{},
                (name.isEmpty() ? QString() : "no such device: " + name + "\n\n") + OVERVIEW,
                false};

    QCommandLineParser parser;
    parser.setApplicationDescription(QString("tarnwick-sim %1: %2").arg(name, device->what));
    parser.addOptions(device->own);
    parser.addOptions(COMMON);
    const QCommandLineOption help({"h", "help"}, "Show this text.");
    parser.addOption(help);
    const bool known = parser.parse(QStringList("tarnwick-sim " + name) + arguments.mid(1));
    if (parser.isSet(help))
        return {{}, parser.helpText(), true};
    if (!known)
        return {{}, parser.errorText() + "\n", false};
    if (!parser.positionalArguments().isEmpty())
        return {{}, "unexpected: " + parser.positionalArguments().join(' ') + "\n", false};

    parsed.options.device = name;
    try {
        read_common(Values(parser), parsed.options);
        device->read(Values(parser), parsed.options);
    } catch (const Mistake& mistake) {
        return {{}, mistake.text + "\n", false};
    }
    return parsed;
}
