// The blocks of a pcapng file that captures are made of, as values. No I/O.
//
// A block, all numbers in the byte order of its section:
//
//   offset   size   field
//   0        4      type
//   4        4      n, the length of the whole block; a multiple of 4
//   8        n-12   body: fields, then options
//   n-4      4      n again
//
// An option; code 0 with length 0 ends the options and may be missing:
//
//   0        2      code
//   2        2      length of the value
//   4        ...    value, then zeros up to a multiple of 4
//
//   options of         code      value
//   any block          1         comment, UTF-8; may occur several times
//   section header     2 3 4     hardware, operating system, application, as text
//   interface          2 3       name, description, as text
//                      8         rate in bit/s, 8 bytes
//                      9         resolution of time stamps: n for 10^-n s, 0x80 | n for 2^-n s;
//                                10^-6 when missing
//                      14        seconds to add to time stamps, 8 bytes, signed
//   enhanced packet    2         flags, 4 bytes: bits 0 and 1 are the direction, 1 in and 2 out
//                      3         hash of the packet: algorithm, 2 for CRC-32; then, high byte
//                                first, the CRC
//
// What is read may be in either byte order; what is built is in little endian. Lengths in a file
// are never trusted; unknown blocks and options are skipped.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <cstdint>
#include <optional>

enum PcapngBlockType : std::uint32_t {
    PCAPNG_INTERFACE = 1,
    PCAPNG_PACKET = 6,
    PCAPNG_SECTION = 0x0A0D0D0A, // the same in both byte orders
};

enum class PcapngOrder : std::uint8_t { Little, Big };

// A value, or what is wrong with the bytes that it was to come from.
template <typename Value> struct PcapngParsed
{
    std::optional<Value> value;
    QString fault;
};

// The frame around a body.
struct PcapngBlock
{
    static constexpr int HEAD = 8;
    static constexpr int OVERHEAD = 12;
    // Of a block that is read. Wireshark's own is the same.
    static constexpr std::uint32_t LENGTH_MAX = 16 * 1024 * 1024;

    std::uint32_t type = 0;
    PcapngOrder order = PcapngOrder::Little;
    QByteArray body;

    QByteArray build() const;
    // The bytes of one whole block. A section header gives its own order; `order` is that of
    // others.
    static PcapngParsed<PcapngBlock> parse(const QByteArray& bytes, PcapngOrder order);
    // A section header's own order, which its first HEAD + 4 bytes show; `order` for other blocks.
    static PcapngParsed<PcapngOrder> order_of(const QByteArray& head, PcapngOrder order);
    // The length that the first bytes of a block, HEAD and for a section header 4 more, say that it
    // has; a fault when no block has it.
    static PcapngParsed<std::uint32_t> length(const QByteArray& head, PcapngOrder order);
};

// Type 0x0A0D0D0A, the first block of each section:
//
//   offset   size   field
//   8        4      0x1A2B3C4D, which shows the byte order
//   12       2      major version, 1
//   14       2      minor version, 0 (or 2)
//   16       8      length of the section, all bits set when unknown
struct PcapngSection
{
    // What the application of a file begins with that is held against what build makes of it. A
    // version that writes other blocks or options needs another word.
    static constexpr char OWN_APPLICATION[] = "Tarnwick";

    QString hardware;
    QString system;
    QString application;
    QStringList comments;

    bool is_own() const { return application.startsWith(QLatin1String(OWN_APPLICATION)); }
    QByteArray build() const; // a whole block
    static PcapngParsed<PcapngSection> parse(const PcapngBlock& block);
};

// Type 1, one for each port of a section, counted from 0:
//
//   offset   size   field
//   8        2      link type
//   10       2      0
//   12       4      bytes of a packet that are kept at most, 0 for all
struct PcapngInterface
{
    static constexpr std::uint16_t SERIAL = 250; // the link type of serial captures
    static constexpr std::uint8_t NANOSECONDS = 9;
    static constexpr std::uint8_t MICROSECONDS = 6;
    static constexpr std::uint8_t POWER_OF_TWO = 0x80; // the bit of resolutions 2^-n

    QString name;
    QString description;     // the settings, as text
    std::uint64_t speed = 0; // bit/s, 0 when unknown
    std::uint16_t link_type = SERIAL;
    std::uint32_t snap_length = 0;
    std::uint8_t resolution = NANOSECONDS;
    std::int64_t time_offset_s = 0;
    QStringList comments;

    QByteArray build() const; // a whole block
    static PcapngParsed<PcapngInterface> parse(const PcapngBlock& block);

    // A time stamp of this interface in ns; nothing when it is past the year 2262.
    std::optional<std::int64_t> nanoseconds(std::uint64_t stamp) const;
};

// Type 6:
//
//   offset   size   field
//   8        4      number of the interface
//   12       4      high 4 bytes of the time stamp
//   16       4      low 4 bytes of the time stamp
//   20       4      m, bytes that are here
//   24       4      bytes that there were
//   28       m      the packet, then zeros up to a multiple of 4
struct PcapngPacket
{
    std::uint32_t interface_id = 0;
    std::uint64_t stamp = 0;
    std::uint32_t original_length = 0;
    QByteArray bytes;
    std::optional<std::uint32_t> flags;
    bool hashed = false; // build: with a CRC-32; parse: there was one, and it is right
    QStringList comments;

    QByteArray build() const; // a whole block
    // A hash that is wrong is a fault.
    static PcapngParsed<PcapngPacket> parse(const PcapngBlock& block);
};
