// Counters of bytes and writes.
#pragma once

#include <cstdint>
#include <limits>

// 32 bits that go on from the lowest number after 2147483647.
constexpr int count_after(int count, std::int64_t more)
{
    const auto sum = std::uint32_t(std::uint64_t(count) + std::uint64_t(more));
    return sum <= std::uint32_t(std::numeric_limits<int>::max()) ? int(sum) : -1 - int(~sum);
}
static_assert(count_after(std::numeric_limits<int>::max(), 2) ==
                  std::numeric_limits<int>::min() + 1,
              "a count overflows");

// Whether `count` writes are enough. A limit of 0 is none; a negative one is reached at once.
constexpr bool limit_reached(int limit, int count)
{
    return limit != 0 && limit <= count;
}
