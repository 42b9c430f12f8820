#include "devices/framing.h"

#include "checksum/crc.h"

namespace {
constexpr char START = '\xAB';
constexpr char END = '\xBA';
constexpr int LONGEST_PREFIX = 16;
} // namespace

std::optional<Framing> Framing::named(const QString& text)
{
    const QString kind = text.section(':', 0, 0);
    const QString argument = text.section(':', 1);
    Framing framing;
    if (kind == "rtu") {
        bool ok = false;
        const std::uint32_t address = argument.toUInt(&ok, 0);
        if (!ok || address > 255)
            return {};
        framing.head = QByteArray(1, char(address));
        framing.tail = Tail::Crc;
        return framing;
    }
    if (kind == "chan") {
        framing.head = QByteArray::fromHex(argument.toLatin1());
        const bool whole = framing.head.toHex() == argument.toLatin1().toLower();
        if (!whole || framing.head.isEmpty() || framing.head.size() > LONGEST_PREFIX)
            return {};
        return framing;
    }
    if (text == "crc16") {
        framing.tail = Tail::Crc;
    } else if (text == "rwlt") {
        framing.head = QByteArray(1, START);
        framing.tail = Tail::Marker;
    } else if (text != "none") {
        return {};
    }
    return framing;
}

QByteArray Framing::wrap(const QByteArray& payload) const
{
    QByteArray frame = head + payload;
    if (tail == Tail::Marker)
        frame += END;
    if (tail == Tail::Crc) {
        const std::uint16_t crc = crc16(frame.constData(), int(frame.size()));
        frame += char(crc & 0xFF);
        frame += char(crc >> 8);
    }
    return frame;
}

std::optional<QByteArray> Framing::unwrap(const QByteArray& frame) const
{
    const int tail_size = tail == Tail::Crc ? 2 : tail == Tail::Marker ? 1 : 0;
    const int size = int(frame.size()) - int(head.size()) - tail_size;
    if (size < 0 || !frame.startsWith(head) || (tail == Tail::Marker && !frame.endsWith(END)) ||
        (tail == Tail::Crc && crc16(frame.constData(), int(frame.size())) != 0))
        return {};
    return frame.mid(head.size(), size);
}

bool Framing::surely_whole(const QByteArray& frame) const
{
    return tail == Tail::Crc && unwrap(frame).has_value();
}
