// One thing that happened on a serial port, as captures keep it.
#pragma once

#include "capture/pcapng.h"

#include <QByteArray>
#include <QString>
#include <cstdint>

// The event byte of link type 250; a file may hold others.
enum class CaptureEvent : std::uint8_t {
    StatusChange = 0, // of lines or of the session, as a comment says; no bytes
    DataSent = 1,
    DataReceived = 2,
    DataLost = 5, // `lost` bytes that came or went and are not in the file
    FramingError = 7,
    ParityError = 8,
    Break = 9,
    Overflow = 0x0A,
};

// The control lines of link type 250, as bits.
enum CaptureLine : std::uint8_t {
    CAPTURE_CTS = 0x01,
    CAPTURE_DCD = 0x02,
    CAPTURE_DSR = 0x04,
    CAPTURE_RTS = 0x08,
    CAPTURE_DTR = 0x10,
    CAPTURE_RING = 0x20,
};

// Seen from the computer that records.
enum class CaptureDirection : std::uint8_t { Unknown = 0, Inbound = 1, Outbound = 2 };

struct CaptureRecord
{
    std::int64_t time_ns = 0; // since 1970, UTC; not below 0
    CaptureEvent event = CaptureEvent::StatusChange;
    std::uint8_t lines = 0; // CaptureLine
    CaptureDirection direction = CaptureDirection::Unknown;
    std::uint32_t port = 0; // its place among the interfaces of the section
    QByteArray bytes;
    // Bytes that belong here and are missing: of DataLost, and in what others recorded of a packet
    // that they cut short.
    std::uint32_t lost = 0;
    QString comment; // lines of text; several comments of a packet are lines of it

    static CaptureRecord sent(std::int64_t time_ns, const QByteArray& bytes);
    static CaptureRecord received(std::int64_t time_ns, const QByteArray& bytes);
    // Open, close, loss and return of a port, and remarks.
    static CaptureRecord remark(std::int64_t time_ns, const QString& text);

    bool operator==(const CaptureRecord& other) const;
};

// The system's time now, for records.
std::int64_t capture_time_ns();

// The packet that a record is in a file, and back. What the flags of a packet say about the
// direction of sent and received data is not asked: its event says it. Only a packet of DataLost
// says that bytes are lost.
PcapngPacket packet_of(const CaptureRecord& record);
PcapngParsed<CaptureRecord> record_of(const PcapngPacket& packet, const PcapngInterface& port);
