// Frames with an address before and a CRC after the payload, as Modbus RTU has them.
#pragma once

#include "framers/qframer.h"

#include <cstdint>
#include <optional>
#include <string_view>

//   offset   size   field
//   0        1      address
//   1        n      payload
//   n + 1    1      CRC-16/MODBUS of address and payload, low byte
//   n + 2    1      CRC, high byte
struct RtuFrame
{
    static constexpr int OVERHEAD = 3;

    std::uint8_t address = 0;
    std::string_view payload;

    // Writes payload.size() + OVERHEAD bytes to frame.
    void build(char* frame) const;
    // Nothing when the frame is short or the CRC is wrong. The payload points into frame.
    static std::optional<RtuFrame> parse(std::string_view frame);
};

// Set the address with slave_set before the first write or read.
class QFramerRtu : public QFramer
{
public:
    explicit QFramerRtu(QFramer* lower);

    void slave_set(std::uint8_t slave);

    void flush() override;
    // What the framer below returns: nbytes + 3 when the whole frame has gone out.
    int write(const char* buffer, int nbytes) override;
    // FRAMER_BAD_FRAME, and buffer untouched, when the address or the CRC is wrong.
    int read(char* buffer, int nbytes) override;

    // One frame to or from the given address, whatever slave_set said.
    int write_to(std::uint8_t address, const char* buffer, int nbytes);
    int read_from(std::uint8_t address, char* buffer, int nbytes);

private:
    std::uint8_t slave = 0;
};
