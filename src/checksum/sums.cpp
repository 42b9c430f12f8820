#include "checksum/sums.h"

std::uint8_t sum8(const void* data, unsigned len)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::uint8_t sum = 0;
    for (unsigned n = 0; n < len; ++n)
        sum = static_cast<std::uint8_t>(sum + bytes[n]);
    return sum;
}

std::uint8_t xor8(const void* data, unsigned len)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::uint8_t sum = 0;
    for (unsigned n = 0; n < len; ++n)
        sum ^= bytes[n];
    return sum;
}

std::uint16_t sum16(const void* data, unsigned len)
{
    const auto* bytes = static_cast<const std::int8_t*>(data);
    std::uint16_t sum = 0;
    for (unsigned n = 0; n < len; ++n)
        sum = static_cast<std::uint16_t>(sum + bytes[n]);
    return sum;
}
