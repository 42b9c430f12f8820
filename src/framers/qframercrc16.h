// Guards payload with a CRC after it.
#pragma once

#include "framers/qframer.h"

#include <optional>
#include <string_view>

//   offset   size   field
//   0        n      payload
//   n        1      CRC-16/MODBUS of the payload, low byte
//   n + 1    1      CRC, high byte
struct Crc16Frame
{
    static constexpr int OVERHEAD = 2;

    std::string_view payload;

    // Writes payload.size() + OVERHEAD bytes to frame.
    void build(char* frame) const;
    // Nothing when the CRC is wrong. The payload points into frame.
    static std::optional<Crc16Frame> parse(std::string_view frame);
};

class QFramerCrc16 : public QFramer
{
public:
    explicit QFramerCrc16(QFramer* lower);

    void flush() override;
    // What the framer below returns: nbytes + 2 when the whole frame has gone out.
    int write(const char* buffer, int nbytes) override;
    // FRAMER_BAD_FRAME, and buffer untouched, when the CRC is wrong.
    int read(char* buffer, int nbytes) override;
};
