#include "checksum/crc.h"

#include <array>

namespace {

// Entry i is what eight shifts of the register make of the byte i.
template <typename Register> constexpr std::array<Register, 256> byte_table(Register polynomial)
{
    std::array<Register, 256> table = {};
    for (unsigned i = 0; i < table.size(); ++i) {
        Register c = static_cast<Register>(i);
        for (int bit = 0; bit < 8; ++bit)
            c = static_cast<Register>((c & 1u) ? (c >> 1) ^ polynomial : c >> 1);
        table[i] = c;
    }
    return table;
}

constexpr std::array<std::uint8_t, 256> byte_of(const std::array<std::uint16_t, 256>& words,
                                                int shift)
{
    std::array<std::uint8_t, 256> bytes = {};
    for (unsigned i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(words[i] >> shift);
    return bytes;
}

// The polynomials in reflected form.
constexpr auto CRC8_TABLE = byte_table<std::uint8_t>(0x8C);
constexpr auto CRC32_TABLE = byte_table<std::uint32_t>(0xEDB88320);
// Split into bytes: the register is kept as two bytes, so that no look-up needs a shift.
constexpr auto CRC16_HIGH_TABLE = byte_of(byte_table<std::uint16_t>(0xA001), 8);
constexpr auto CRC16_LOW_TABLE = byte_of(byte_table<std::uint16_t>(0xA001), 0);

static_assert(CRC8_TABLE[1] == 0x5E && CRC8_TABLE[0x80] == 0x8C);
static_assert(CRC16_HIGH_TABLE[1] == 0xC0 && CRC16_LOW_TABLE[1] == 0xC1);
static_assert(CRC32_TABLE[1] == 0x77073096);

} // namespace

std::uint8_t crc8(const void* data, unsigned len)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::uint8_t c = 0;
    for (unsigned n = 0; n < len; ++n)
        c = CRC8_TABLE[c ^ bytes[n]];
    return c;
}

std::uint16_t crc16(const void* data, int len)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::uint8_t lo = 0xFF;
    std::uint8_t hi = 0xFF;
    for (int n = 0; n < len; ++n) {
        const unsigned i = lo ^ bytes[n];
        lo = hi ^ CRC16_LOW_TABLE[i];
        hi = CRC16_HIGH_TABLE[i];
    }
    return static_cast<std::uint16_t>(hi << 8 | lo);
}

std::uint32_t crc32(const void* data, unsigned len, std::uint32_t crc)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::uint32_t c = crc;
    for (unsigned n = 0; n < len; ++n)
        c = (c >> 8) ^ CRC32_TABLE[(c ^ bytes[n]) & 0xFF];
    return c;
}
