// The frame around a module's requests and replies, as the module's own side builds and reads it.
//
//   name         on the wire
//   none         payload
//   crc16        payload, CRC
//   rtu:ADDRESS  address (1 byte), payload, CRC over both
//   chan:HEX     prefix (up to 16 bytes), payload
//   rwlt         0xAB, payload, 0xBA
//
// The CRC is CRC-16/MODBUS, low byte first. No frame holds its length: it ends where the line falls
// silent.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

class Framing
{
public:
    // From its name; empty when there is no such frame.
    static std::optional<Framing> named(const QString& text);

    QByteArray wrap(const QByteArray& payload) const;
    // The payload; empty when the frame is broken or meant for somebody else.
    std::optional<QByteArray> unwrap(const QByteArray& frame) const;
    // The frame is known to be whole before the line has fallen silent.
    bool surely_whole(const QByteArray& frame) const;

private:
    enum class Tail { Nothing, Crc, Marker };
    QByteArray head;
    Tail tail = Tail::Nothing;
};
