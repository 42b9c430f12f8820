#include "capture/capturereader.h"

#include "capture/pcapngoptions.h"

#include <QtEndian>
#include <algorithm>

namespace {

// Ports of a section whose descriptions are missing, at most: a number above it is damage itself.
constexpr std::uint32_t NAMELESS_MAX = 256;
// Descriptions that are kept of a section, so that a file can't take all memory.
constexpr int PORTS_MAX = 65536;
// Fields of a packet's block before the packet.
constexpr int PACKET_HEAD = PcapngBlock::HEAD + 20;
constexpr int INTERFACE_HEAD = PcapngBlock::HEAD + 8;
constexpr int PIECE = 256 * 1024;
constexpr int SECTOR = 4096; // what a disk can't read, at least

// Of the head of a port's or a packet's block. Zeros at the end of the block before make a shifted
// head in the other byte order nearly one.
bool plausible(const PcapngFields& head, std::uint32_t length)
{
    if (head.u32(0) == PCAPNG_INTERFACE)
        return head.bytes.size() >= INTERFACE_HEAD && head.u16(8) != 0 && head.u16(10) == 0;
    return head.bytes.size() >= PACKET_HEAD && length >= PACKET_HEAD + 4 &&
           head.u32(8) < NAMELESS_MAX && head.u32(20) <= length - PACKET_HEAD - 4;
}

QString read_fault(const QIODevice& device)
{
    return "the file can't be read here: " + device.errorString();
}

} // namespace

// A piece of the file in memory.
class CaptureReader::Window
{
public:
    explicit Window(QIODevice& device)
        : device(device)
        , size(device.size())
    {
    }

    // The bytes there, fewer at the end of the file or where it can't be read. They stay until the
    // next call.
    QByteArray at(std::int64_t offset, std::int64_t count)
    {
        if (offset < start || offset + count > start + bytes.size())
            fill(offset, std::max<std::int64_t>(count, PIECE));
        const std::int64_t there = std::max<std::int64_t>(start + bytes.size() - offset, 0);
        return QByteArray::fromRawData(bytes.constData() + (offset - start),
                                       int(std::min(count, there)));
    }

    // The same without leaving the piece, for a few bytes.
    QByteArray glance(std::int64_t offset, std::int64_t count)
    {
        if (offset >= start && offset + count <= start + bytes.size())
            return bytes.mid(int(offset - start), int(count));
        return read(offset, count);
    }

    QIODevice& device;
    const std::int64_t size;
    bool readable = true; // all that was asked for since this was set

private:
    void fill(std::int64_t offset, std::int64_t count)
    {
        start = offset;
        bytes = read(offset, count);
    }
    QByteArray read(std::int64_t offset, std::int64_t count)
    {
        const std::int64_t there = std::max<std::int64_t>(std::min(count, size - offset), 0);
        QByteArray found = device.seek(offset) ? device.read(there) : QByteArray();
        readable = readable && found.size() == there;
        return found;
    }

    QByteArray bytes;
    std::int64_t start = 0;
};

CaptureReader::CaptureReader(QIODevice& device)
    : window(std::make_unique<Window>(device))
{
}

CaptureReader::~CaptureReader() = default;

CaptureReader::Found CaptureReader::next()
{
    while (next_offset < window->size) {
        block_offset = next_offset;
        window->readable = true;
        const auto length =
            PcapngBlock::length(window->at(block_offset, PcapngBlock::HEAD + 4), order);
        if (!length.value)
            return pass_damage(0, length.fault);
        if (block_offset + *length.value > window->size)
            return pass_damage(0, "the file ends in the middle of a block");
        const QByteArray bytes = window->at(block_offset, *length.value);
        if (std::uint32_t(bytes.size()) != *length.value)
            return pass_damage(0, read_fault(window->device));
        const auto content = take(bytes);
        if (!content.value) {
            const bool framed = PcapngBlock::parse(bytes, order).value.has_value();
            return pass_damage(framed ? *length.value : 0, content.fault);
        }
        next_offset = block_offset + *length.value;
        switch (*content.value) {
        case Content::Section:
            return Found::Section;
        case Content::Port:
            return Found::Port;
        case Content::Record:
            return Found::Record;
        case Content::Skipped:
            ++skipped_blocks;
        }
    }
    block_offset = window->size;
    return Found::End;
}

PcapngParsed<CaptureReader::Content> CaptureReader::take(const QByteArray& bytes)
{
    const auto block = PcapngBlock::parse(bytes, order);
    if (!block.value)
        return {std::nullopt, block.fault};
    if (block.value->type == PCAPNG_SECTION)
        return take_section(*block.value, bytes);
    if (!in_section && !damaged)
        return {std::nullopt, "the file doesn't begin with a section header"};
    if (block.value->type == PCAPNG_INTERFACE)
        return take_port(*block.value, bytes);
    if (block.value->type == PCAPNG_PACKET)
        return take_packet(*block.value, bytes);
    if (own_section && origin != Origin::Rewriter)
        return {std::nullopt,
                QStringLiteral("the block has the unknown type %1").arg(block.value->type)};
    return {Content::Skipped, {}};
}

PcapngParsed<CaptureReader::Content> CaptureReader::take_section(const PcapngBlock& block,
                                                                 const QByteArray& bytes)
{
    const auto section = PcapngSection::parse(block);
    if (!section.value)
        return {std::nullopt, section.fault};
    // Ours are never in big endian.
    const bool own = section.value->is_own() && block.order == PcapngOrder::Little;
    if (own && section.value->build() != bytes)
        return {std::nullopt, "the section header isn't as it was written"};
    order = block.order;
    in_section = true;
    own_section = own;
    origin = Origin::Unknown;
    damaged = false;
    current_section = *section.value;
    current_ports.clear();
    return {Content::Section, {}};
}

PcapngParsed<CaptureReader::Content> CaptureReader::take_port(const PcapngBlock& block,
                                                              const QByteArray& bytes)
{
    const auto port = PcapngInterface::parse(block);
    if (!port.value)
        return {std::nullopt, port.fault};
    const PcapngInterface own;
    if (own_section &&
        (port.value->build() != bytes || port.value->link_type != own.link_type ||
         port.value->snap_length != own.snap_length || port.value->resolution != own.resolution))
        return {std::nullopt, "the description of the port isn't as it was written"};
    if (current_ports.size() >= PORTS_MAX)
        return {std::nullopt, "there are more descriptions of ports than anybody has"};
    current_ports.append(*port.value);
    return {Content::Port, {}};
}

PcapngParsed<CaptureReader::Content> CaptureReader::take_packet(const PcapngBlock& block,
                                                                const QByteArray& bytes)
{
    const auto packet = PcapngPacket::parse(block);
    if (!packet.value)
        return {std::nullopt, packet.fault};
    const PcapngInterface* const port = port_at(packet.value->interface_id);
    if (!port)
        return {std::nullopt, QStringLiteral("nothing describes the port with the number %1")
                                  .arg(packet.value->interface_id)};
    if (port->link_type != PcapngInterface::SERIAL)
        return {Content::Skipped, {}};
    const auto record = record_of(*packet.value, *port);
    if (!record.value)
        return {std::nullopt, record.fault};
    if (own_section) {
        const bool hashed = packet.value->hashed;
        if (hashed ? packet_of(*record.value).build() != bytes : origin == Origin::Recorder)
            return {std::nullopt, "the record isn't as it was written"};
        origin = hashed ? Origin::Recorder : Origin::Rewriter;
    }
    current_record = *record.value;
    return {Content::Record, {}};
}

const PcapngInterface* CaptureReader::port_at(std::uint32_t number)
{
    if (damaged && number < NAMELESS_MAX)
        while (current_ports.size() <= int(number))
            current_ports.append(PcapngInterface());
    return number < std::uint32_t(current_ports.size()) ? &current_ports[int(number)] : nullptr;
}

// Of a block whose frame is good the length is known; else that is 0.
CaptureReader::Found CaptureReader::pass_damage(std::int64_t known_length, const QString& reason)
{
    damaged = true;
    if (window->at(block_offset, PcapngBlock::HEAD).startsWith("\x0A\x0D\x0D\x0A")) {
        in_section = own_section =
            false; // what follows belongs to a section of which nothing is known
        current_section = {};
        current_ports.clear();
    }
    const std::int64_t good =
        known_length > 0 ? block_offset + known_length : next_good(block_offset + 1);
    const bool torn = known_length == 0 && good >= window->size && window->readable;
    current_damage = {torn ? CaptureDamage::Kind::TornEnd : CaptureDamage::Kind::Block,
                      block_offset, good - block_offset, reason};
    next_offset = good;
    return Found::Damage;
}

// Where the next block begins, or the size of the file.
std::int64_t CaptureReader::next_good(std::int64_t offset)
{
    while (offset < window->size) {
        QByteArray piece = window->at(offset, PIECE);
        piece.detach(); // looking at the end of a block may move the window
        for (int i = 0; i + 4 <= piece.size(); ++i)
            if (begins_block(offset + i, qFromLittleEndian<quint32>(piece.constData() + i)))
                return offset + i;
        // Bytes that can't be read end a piece early.
        const bool unreadable = piece.size() < 4 && offset + piece.size() < window->size;
        offset += unreadable ? SECTOR : std::max(int(piece.size()) - 3, 1);
    }
    return window->size;
}

// Cheap, as it may be asked at each byte of a large file: no hash is looked at.
bool CaptureReader::begins_block(std::int64_t offset, std::uint32_t type_bytes)
{
    const bool little = type_bytes == PCAPNG_PACKET || type_bytes == PCAPNG_INTERFACE;
    const bool big = qbswap(type_bytes) == PCAPNG_PACKET || qbswap(type_bytes) == PCAPNG_INTERFACE;
    const PcapngOrder seen = little ? PcapngOrder::Little : PcapngOrder::Big;
    if (type_bytes != PCAPNG_SECTION && !((little || big) && (seen == order || !in_section)))
        return false;
    const QByteArray head = window->glance(offset, PACKET_HEAD);
    const auto length = PcapngBlock::length(head, seen);
    if (!length.value || offset + *length.value > window->size)
        return false;
    const PcapngFields fields = {head, *PcapngBlock::order_of(head, seen).value};
    const QByteArray tail = window->glance(offset + *length.value - 4, 4);
    if (tail.size() < 4 || PcapngFields{tail, fields.order}.u32(0) != *length.value)
        return false;
    if (type_bytes != PCAPNG_SECTION && !plausible(fields, *length.value))
        return false;
    order = fields.order;
    return true;
}
