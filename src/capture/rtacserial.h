// The header in front of the bytes of a packet of link type 250, as a value.
//
//   offset   size   field                                      all numbers high byte first
//   0        4      seconds since 1970
//   4        4      microseconds
//   8        1      event, CaptureEvent
//   9        1      control lines, CaptureLine
//   10       2      0
//   12       ...    the bytes that were sent or received
#pragma once

#include "capture/pcapng.h"

struct RtacSerial
{
    static constexpr int SIZE = 12;

    std::uint32_t seconds = 0;
    std::uint32_t microseconds = 0;
    std::uint8_t event = 0;
    std::uint8_t lines = 0;

    QByteArray build() const;
    // From the packet with that header.
    static PcapngParsed<RtacSerial> parse(const QByteArray& packet);
};
