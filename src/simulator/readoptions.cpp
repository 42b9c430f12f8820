#include "simulator/readoptions.h"

#include <array>

namespace {
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
} // namespace

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
