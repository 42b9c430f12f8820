// Reads a capture from its start to its end, past whatever is damaged in it.
#pragma once

#include "capture/capturerecord.h"
#include "capture/pcapng.h"

#include <QIODevice>
#include <QVector>
#include <cstdint>
#include <memory>

// A part of a file that holds no good block.
struct CaptureDamage
{
    enum class Kind {
        Block,   // good blocks follow, or what may be some and can't be read
        TornEnd, // the file ends in it, as after a kill or a lost supply
    };

    Kind kind = Kind::Block;
    std::int64_t offset = 0;
    std::int64_t length = 0;
    QString reason;
};

// What is wrong in a file is found and read past, not failed on. A block with wrong lengths is left
// by a search for the next good one, at any offset. In sections of our own program all is held
// against what a writer makes of it, so that nearly every bit is guarded. Not guarded are
//   - the options of the section's header, which say whose it is, and of its first record
//   - texts of ports and records, the rate
//   - nanoseconds within a microsecond, the number of lost bytes, the direction of what is neither
//     sent nor received, a port's number that another port has
//
// A record whose port's description is damaged is read as one of a nameless port. Packets of other
// link types are skipped, and so are blocks of other types.
//
// The memory it takes is that of the longest block.
class CaptureReader
{
public:
    enum class Found { Section, Port, Record, Damage, End };

    // The device is open, can seek, and outlives the reader.
    explicit CaptureReader(QIODevice& device);
    ~CaptureReader();
    CaptureReader(const CaptureReader&) = delete;
    CaptureReader& operator=(const CaptureReader&) = delete;

    // The next thing, which one of these then shows.
    Found next();
    const PcapngSection& section() const { return current_section; }
    const QVector<PcapngInterface>& ports() const { return current_ports; } // of this section
    const CaptureRecord& record() const { return current_record; }
    const CaptureDamage& damage() const { return current_damage; }

    std::int64_t offset() const { return block_offset; } // of what was found last, in bytes
    std::uint64_t skipped() const { return skipped_blocks; }

private:
    class Window;

    // What a block holds, or that it is skipped; a fault when it is damaged.
    enum class Content { Section, Port, Record, Skipped };
    PcapngParsed<Content> take(const QByteArray& bytes);
    PcapngParsed<Content> take_section(const PcapngBlock& block, const QByteArray& bytes);
    PcapngParsed<Content> take_port(const PcapngBlock& block, const QByteArray& bytes);
    PcapngParsed<Content> take_packet(const PcapngBlock& block, const QByteArray& bytes);
    Found pass_damage(std::int64_t known_length, const QString& reason);
    std::int64_t next_good(std::int64_t offset);
    bool begins_block(std::int64_t offset, std::uint32_t type_bytes);
    const PcapngInterface* port_at(std::uint32_t number);

    std::unique_ptr<Window> window;
    std::int64_t block_offset = 0;
    std::int64_t next_offset = 0;
    std::uint64_t skipped_blocks = 0;

    // Who wrote the records of an own section: its recorder, or a program such as editcap, which
    // keeps the header and leaves hashes out.
    enum class Origin { Unknown, Recorder, Rewriter };

    PcapngOrder order = PcapngOrder::Little;
    bool in_section = false;  // a good section header was there; else the order is a guess
    bool own_section = false; // one of our own program's
    Origin origin = Origin::Unknown;
    bool damaged = false; // something in this section, so that descriptions may be missing
    PcapngSection current_section;
    QVector<PcapngInterface> current_ports;
    CaptureRecord current_record;
    CaptureDamage current_damage;
};
