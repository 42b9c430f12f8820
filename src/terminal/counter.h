// Counters of bytes and writes.
#pragma once

#include <QtGlobal>
#include <limits>

/// 32 bits that go on from the lowest number after 2147483647.
constexpr int count_after(int count, qint64 more)
{
    const auto sum = quint32(quint64(count) + quint64(more));
    return sum <= quint32(std::numeric_limits<int>::max()) ? int(sum) : -1 - int(~sum);
}
static_assert(count_after(std::numeric_limits<int>::max(), 2) ==
                  std::numeric_limits<int>::min() + 1,
              "a count overflows");
