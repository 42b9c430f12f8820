#include "capture/capturerecord.h"

#include "capture/rtacserial.h"

#include <algorithm>
#include <chrono>
#include <tuple>

namespace {

constexpr std::int64_t NS_IN_SECOND = 1'000'000'000;
constexpr std::int64_t NS_IN_MICROSECOND = 1'000;
constexpr std::uint32_t DIRECTION_FLAGS = 3;

CaptureDirection direction_of(CaptureEvent event, CaptureDirection other)
{
    if (event == CaptureEvent::DataSent)
        return CaptureDirection::Outbound;
    return event == CaptureEvent::DataReceived ? CaptureDirection::Inbound : other;
}

CaptureRecord data(CaptureEvent event, std::int64_t time_ns, const QByteArray& bytes)
{
    CaptureRecord record;
    record.time_ns = time_ns;
    record.event = event;
    record.direction = direction_of(event, CaptureDirection::Unknown);
    record.bytes = bytes;
    return record;
}
} // namespace

CaptureRecord CaptureRecord::sent(std::int64_t time_ns, const QByteArray& bytes)
{
    return data(CaptureEvent::DataSent, time_ns, bytes);
}

CaptureRecord CaptureRecord::received(std::int64_t time_ns, const QByteArray& bytes)
{
    return data(CaptureEvent::DataReceived, time_ns, bytes);
}

CaptureRecord CaptureRecord::remark(std::int64_t time_ns, const QString& text)
{
    CaptureRecord record;
    record.time_ns = time_ns;
    record.comment = text;
    return record;
}

bool CaptureRecord::operator==(const CaptureRecord& other) const
{
    const auto values = [](const CaptureRecord& record) {
        return std::tie(record.time_ns, record.event, record.lines, record.direction, record.port,
                        record.bytes, record.lost, record.comment);
    };
    return values(*this) == values(other);
}

std::int64_t capture_time_ns()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

PcapngPacket packet_of(const CaptureRecord& record)
{
    const std::int64_t time_ns = std::max<std::int64_t>(record.time_ns, 0);
    RtacSerial header;
    header.seconds = std::uint32_t(time_ns / NS_IN_SECOND);
    header.microseconds = std::uint32_t(time_ns % NS_IN_SECOND / NS_IN_MICROSECOND);
    header.event = std::uint8_t(record.event);
    header.lines = record.lines;
    PcapngPacket packet;
    packet.interface_id = record.port;
    packet.stamp = std::uint64_t(time_ns);
    packet.bytes = header.build() + record.bytes;
    packet.original_length = std::uint32_t(packet.bytes.size());
    if (record.event == CaptureEvent::DataLost)
        packet.original_length += record.lost;
    packet.flags = std::uint32_t(direction_of(record.event, record.direction));
    packet.hashed = true;
    if (!record.comment.isEmpty())
        packet.comments.append(record.comment);
    return packet;
}

PcapngParsed<CaptureRecord> record_of(const PcapngPacket& packet, const PcapngInterface& port)
{
    const auto header = RtacSerial::parse(packet.bytes);
    if (!header.value)
        return {std::nullopt, header.fault};
    const auto time_ns = port.nanoseconds(packet.stamp);
    if (!time_ns)
        return {std::nullopt, "the time stamp is none of this era"};
    CaptureRecord record;
    record.time_ns = *time_ns;
    record.event = CaptureEvent(header.value->event);
    record.lines = header.value->lines;
    const std::uint32_t flagged = packet.flags.value_or(0) & DIRECTION_FLAGS;
    const CaptureDirection direction =
        flagged == DIRECTION_FLAGS ? CaptureDirection::Unknown : CaptureDirection(flagged);
    record.direction = direction_of(record.event, direction);
    record.port = packet.interface_id;
    record.bytes = packet.bytes.mid(RtacSerial::SIZE);
    record.lost = packet.original_length - std::uint32_t(packet.bytes.size());
    record.comment = packet.comments.join('\n');
    return {record, {}};
}
