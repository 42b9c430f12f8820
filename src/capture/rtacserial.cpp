#include "capture/rtacserial.h"

#include <QtEndian>

namespace {
constexpr std::uint32_t MICROSECONDS = 1'000'000;
} // namespace

QByteArray RtacSerial::build() const
{
    QByteArray header(SIZE, '\0');
    qToBigEndian(seconds, header.data());
    qToBigEndian(microseconds, header.data() + 4);
    header[8] = char(event);
    header[9] = char(lines);
    return header;
}

PcapngParsed<RtacSerial> RtacSerial::parse(const QByteArray& packet)
{
    if (packet.size() < SIZE)
        return {std::nullopt, "the packet is shorter than the header of serial packets"};
    const char* const header = packet.constData();
    RtacSerial value;
    value.seconds = qFromBigEndian<quint32>(header);
    value.microseconds = qFromBigEndian<quint32>(header + 4);
    value.event = std::uint8_t(header[8]);
    value.lines = std::uint8_t(header[9]);
    if (value.microseconds >= MICROSECONDS)
        return {std::nullopt, "the header of the serial packet has no valid time"};
    return {value, {}};
}
