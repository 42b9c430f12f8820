#include "capture/pcapng.h"

#include "capture/pcapngoptions.h"

#include "checksum/crc.h"

#include <QtEndian>
#include <algorithm>
#include <limits>

namespace {

constexpr std::uint32_t ORDER_MAGIC = 0x1A2B3C4D;
constexpr std::uint16_t MAJOR_VERSION = 1;
constexpr std::uint16_t MINOR_VERSIONS[] = {0, 2};
constexpr int SECTION_FIELDS = 16;
constexpr int INTERFACE_FIELDS = 8;
constexpr int PACKET_FIELDS = 20;
constexpr char CRC32_ALGORITHM = 2;
constexpr std::int64_t NS = 1'000'000'000;

enum SectionOption : std::uint16_t { HARDWARE = 2, SYSTEM = 3, APPLICATION = 4 };
enum InterfaceOption : std::uint16_t {
    NAME = 2,
    DESCRIPTION = 3,
    SPEED = 8,
    RESOLUTION = 9,
    TIME_OFFSET = 14
};
enum PacketOption : std::uint16_t { FLAGS = 2, HASH = 3 };

template <typename Number> void append(QByteArray& bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

QByteArray crc_of(const QByteArray& packet)
{
    const std::uint32_t crc = ~crc32(packet.constData(), unsigned(packet.size()), CRC32_START);
    QByteArray bytes(4, '\0');
    qToBigEndian(crc, bytes.data());
    return bytes;
}

std::uint64_t power_of_ten(int exponent)
{
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

template <typename Value> PcapngParsed<Value> faulty(const char* fault)
{
    return {std::nullopt, QLatin1String(fault)};
}

} // namespace

QByteArray PcapngBlock::build() const
{
    QByteArray block;
    const int padded = (int(body.size()) + 3) & ~3;
    block.reserve(padded + OVERHEAD);
    append(block, type);
    append(block, std::uint32_t(padded + OVERHEAD));
    block.append(body);
    block.append(padded - int(body.size()), '\0');
    append(block, std::uint32_t(padded + OVERHEAD));
    return block;
}

PcapngParsed<PcapngOrder> PcapngBlock::order_of(const QByteArray& head, PcapngOrder order)
{
    if (head.size() < HEAD)
        return faulty<PcapngOrder>("the file ends in the head of a block");
    if (qFromLittleEndian<quint32>(head.constData()) != PCAPNG_SECTION)
        return {order, {}};
    if (head.size() < HEAD + 4)
        return faulty<PcapngOrder>("the file ends in the head of a section");
    const char* const magic = head.constData() + HEAD;
    if (qFromLittleEndian<quint32>(magic) == ORDER_MAGIC)
        return {PcapngOrder::Little, {}};
    if (qFromBigEndian<quint32>(magic) == ORDER_MAGIC)
        return {PcapngOrder::Big, {}};
    return faulty<PcapngOrder>("the section header shows no byte order");
}

PcapngParsed<std::uint32_t> PcapngBlock::length(const QByteArray& head, PcapngOrder order)
{
    const auto own = order_of(head, order);
    if (!own.value)
        return {std::nullopt, own.fault};
    const std::uint32_t length = PcapngFields{head, *own.value}.u32(4);
    if (length < OVERHEAD || length % 4 != 0 || length > LENGTH_MAX)
        return {std::nullopt, QStringLiteral("no block has a length of %1").arg(length)};
    return {length, {}};
}

PcapngParsed<PcapngBlock> PcapngBlock::parse(const QByteArray& bytes, PcapngOrder order)
{
    const auto length = PcapngBlock::length(bytes, order);
    if (!length.value)
        return {std::nullopt, length.fault};
    const int size = int(bytes.size());
    if (*length.value != std::uint32_t(size))
        return faulty<PcapngBlock>("the block is cut short");
    const PcapngFields fields = {bytes, *order_of(bytes, order).value};
    if (fields.u32(size - 4) != *length.value)
        return faulty<PcapngBlock>("the lengths at both ends of the block differ");
    return {PcapngBlock{fields.u32(0), fields.order, bytes.mid(HEAD, size - OVERHEAD)}, {}};
}

QByteArray PcapngSection::build() const
{
    QByteArray body;
    append(body, ORDER_MAGIC);
    append(body, MAJOR_VERSION);
    append(body, MINOR_VERSIONS[0]);
    append(body, std::numeric_limits<std::uint64_t>::max());
    PcapngOptions options;
    options.add_texts(PcapngOptions::COMMENT, comments);
    options.add_text(HARDWARE, hardware);
    options.add_text(SYSTEM, system);
    options.add_text(APPLICATION, application);
    return PcapngBlock{PCAPNG_SECTION, PcapngOrder::Little, body + options.build()}.build();
}

PcapngParsed<PcapngSection> PcapngSection::parse(const PcapngBlock& block)
{
    const PcapngFields fields = {block.body, block.order};
    if (block.body.size() < SECTION_FIELDS || fields.u32(0) != ORDER_MAGIC)
        return faulty<PcapngSection>("the section header is too short");
    const std::uint16_t minor = fields.u16(6);
    if (fields.u16(4) != MAJOR_VERSION ||
        std::find(std::begin(MINOR_VERSIONS), std::end(MINOR_VERSIONS), minor) ==
            std::end(MINOR_VERSIONS))
        return faulty<PcapngSection>("the section has a version that is unknown");
    const auto length = std::int64_t(fields.u64(8));
    if (length < -1 || (length >= 0 && length % 4 != 0))
        return faulty<PcapngSection>("no section has the length that its header gives");
    const auto options = PcapngOptions::parse(block.body.mid(SECTION_FIELDS), block.order);
    if (!options.value)
        return {std::nullopt, options.fault};
    PcapngSection section;
    section.hardware = options.value->text(HARDWARE);
    section.system = options.value->text(SYSTEM);
    section.application = options.value->text(APPLICATION);
    section.comments = options.value->texts(PcapngOptions::COMMENT);
    return {section, {}};
}

QByteArray PcapngInterface::build() const
{
    QByteArray body;
    append(body, link_type);
    append(body, std::uint16_t(0));
    append(body, snap_length);
    PcapngOptions options;
    options.add_texts(PcapngOptions::COMMENT, comments);
    options.add_text(NAME, name);
    options.add_text(DESCRIPTION, description);
    if (speed != 0)
        options.add_number(SPEED, speed);
    options.add_number(RESOLUTION, resolution);
    if (time_offset_s != 0)
        options.add_number(TIME_OFFSET, std::uint64_t(time_offset_s));
    return PcapngBlock{PCAPNG_INTERFACE, PcapngOrder::Little, body + options.build()}.build();
}

PcapngParsed<PcapngInterface> PcapngInterface::parse(const PcapngBlock& block)
{
    const PcapngFields fields = {block.body, block.order};
    if (block.body.size() < INTERFACE_FIELDS)
        return faulty<PcapngInterface>("the description of an interface is too short");
    const auto options = PcapngOptions::parse(block.body.mid(INTERFACE_FIELDS), block.order);
    if (!options.value)
        return {std::nullopt, options.fault};
    PcapngInterface port;
    port.link_type = fields.u16(0);
    port.snap_length = fields.u32(4);
    port.name = options.value->text(NAME);
    port.description = options.value->text(DESCRIPTION);
    port.speed = options.value->number<quint64>(SPEED).value_or(0);
    port.resolution = options.value->number<quint8>(RESOLUTION).value_or(MICROSECONDS);
    port.time_offset_s = std::int64_t(options.value->number<quint64>(TIME_OFFSET).value_or(0));
    port.comments = options.value->texts(PcapngOptions::COMMENT);
    const bool binary = (port.resolution & POWER_OF_TWO) != 0;
    if ((port.resolution & ~POWER_OF_TWO) > (binary ? 63 : 19))
        return faulty<PcapngInterface>("the interface has no valid resolution of time stamps");
    return {port, {}};
}

std::optional<std::int64_t> PcapngInterface::nanoseconds(std::uint64_t stamp) const
{
    const int exponent = resolution & ~POWER_OF_TWO;
    const bool binary = (resolution & POWER_OF_TWO) != 0;
    const std::uint64_t units = binary ? std::uint64_t(1) << exponent : power_of_ten(exponent);
    const std::uint64_t seconds = stamp / units;
    std::uint64_t rest = stamp % units;
    if (!binary)
        rest =
            exponent <= 9 ? rest * power_of_ten(9 - exponent) : rest / power_of_ten(exponent - 9);
    else if (exponent <= 30)
        rest = (rest * NS) >> exponent;
    else
        rest = ((rest >> (exponent - 30)) * NS) >> 30;
    constexpr std::int64_t SECONDS_MAX = std::numeric_limits<std::int64_t>::max() / NS;
    if (seconds >= std::uint64_t(SECONDS_MAX) || time_offset_s > SECONDS_MAX ||
        time_offset_s < -SECONDS_MAX)
        return std::nullopt;
    const std::int64_t shifted = std::int64_t(seconds) + time_offset_s;
    if (shifted < 0 || shifted >= SECONDS_MAX)
        return std::nullopt;
    return shifted * NS + std::int64_t(rest);
}

QByteArray PcapngPacket::build() const
{
    QByteArray body;
    body.reserve(PACKET_FIELDS + int(bytes.size()) + 64);
    append(body, interface_id);
    append(body, std::uint32_t(stamp >> 32));
    append(body, std::uint32_t(stamp));
    append(body, std::uint32_t(bytes.size()));
    append(body, original_length);
    body.append(bytes);
    body.append((4 - int(bytes.size()) % 4) % 4, '\0');
    PcapngOptions options;
    options.add_texts(PcapngOptions::COMMENT, comments);
    if (flags)
        options.add_number(FLAGS, *flags);
    if (hashed)
        options.add(HASH, CRC32_ALGORITHM + crc_of(bytes));
    return PcapngBlock{PCAPNG_PACKET, PcapngOrder::Little, body + options.build()}.build();
}

PcapngParsed<PcapngPacket> PcapngPacket::parse(const PcapngBlock& block)
{
    const PcapngFields fields = {block.body, block.order};
    if (block.body.size() < PACKET_FIELDS)
        return faulty<PcapngPacket>("the packet's block is too short");
    const std::uint32_t room = std::uint32_t(block.body.size()) - PACKET_FIELDS;
    const std::uint32_t size = fields.u32(12);
    PcapngPacket packet;
    packet.original_length = fields.u32(16);
    if (size > room || size > packet.original_length)
        return faulty<PcapngPacket>("the packet is longer than its block");
    packet.interface_id = fields.u32(0);
    packet.stamp = std::uint64_t(fields.u32(4)) << 32 | fields.u32(8);
    packet.bytes = block.body.mid(PACKET_FIELDS, int(size));
    const int padded = int(std::min(room, (size + 3) & ~3u));
    const auto options = PcapngOptions::parse(block.body.mid(PACKET_FIELDS + padded), block.order);
    if (!options.value)
        return {std::nullopt, options.fault};
    packet.flags = options.value->number<quint32>(FLAGS);
    packet.comments = options.value->texts(PcapngOptions::COMMENT);
    for (const QByteArray& hash : options.value->values(HASH)) {
        if (hash.size() != 5 || hash[0] != CRC32_ALGORITHM)
            continue; // of an algorithm that nobody asks for here
        packet.hashed = true;
        if (hash.mid(1) != crc_of(packet.bytes))
            return faulty<PcapngPacket>(
                "the bytes of the packet don't have the hash that they had");
    }
    return {packet, {}};
}
