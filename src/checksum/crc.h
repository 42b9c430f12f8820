// The three table-driven CRCs that guard frames and firmware blocks and that the calculator shows.
#pragma once

#include <cstdint>

//            catalogue name      polynomial  start       out XOR  of nothing   of "123456789"
//   crc8     CRC-8/MAXIM-DOW     0x31        0x00        none     0x00         0xA1
//   crc16    CRC-16/MODBUS       0x8005      0xFFFF      none     0xFFFF       0x4B37
//   crc32    CRC-32/JAMCRC       0x04C11DB7  0xFFFFFFFF  none     the start    0x340BC6D9
//
// All are reflected, in and out. They keep no state and run on any thread; data may be null when
// len is 0.

std::uint8_t crc8(const void* data, unsigned len);

// On the wire the low byte goes first; over a frame with its CRC after it the result is 0. A len
// below 0 counts as 0.
std::uint16_t crc16(const void* data, int len);

constexpr std::uint32_t CRC32_START = 0xFFFFFFFF;

// crc is CRC32_START for a whole run, or the result over the bytes before these. The register
// is returned as it is: the common CRC-32 is its complement.
std::uint32_t crc32(const void* data, unsigned len, std::uint32_t crc);
