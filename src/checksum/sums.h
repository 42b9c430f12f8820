// The two sums and the XOR that the calculator shows beside the CRCs. Each is 0 over no bytes.
#pragma once

#include <cstdint>

// Sum of the bytes, modulo 256.
std::uint8_t sum8(const void* data, unsigned len);
std::uint8_t xor8(const void* data, unsigned len);
// Sum of the bytes taken as signed numbers, modulo 65536: the one byte 0xFF gives 0xFFFF.
std::uint16_t sum16(const void* data, unsigned len);
