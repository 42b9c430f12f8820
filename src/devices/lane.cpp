#include "devices/lane.h"

#include <algorithm>

namespace {
constexpr int BITS_PER_BYTE = 10;
// Long transfers are handed on in portions of this length, as a port's driver does it.
constexpr std::chrono::milliseconds PORTION(1);
} // namespace

Lane::Lane(int baud)
    : byte_time(baud > 0 ? BITS_PER_BYTE * std::chrono::nanoseconds(std::chrono::seconds(1)) / baud
                         : std::chrono::nanoseconds(0))
{
}

void Lane::put(const QByteArray& bytes, Time now)
{
    if (queue.isEmpty())
        front_starts = now;
    queue += bytes;
}

QByteArray Lane::take(int most, Time now)
{
    const int count = std::min(most, arrived(now));
    QByteArray bytes = queue.left(count);
    queue.remove(0, count);
    front_starts += count * byte_time;
    if (count > 0)
        taken_until = front_starts;
    return bytes;
}

Time Lane::next_arrival(Time now) const
{
    if (queue.isEmpty())
        return NEVER;
    const Time all_arrived = front_starts + queue.size() * byte_time;
    return std::min(all_arrived, std::max(now + PORTION, front_starts + byte_time));
}

int Lane::arrived(Time now) const
{
    if (byte_time.count() == 0)
        return int(queue.size());
    const auto bytes = std::max<std::int64_t>(0, (now - front_starts) / byte_time);
    return int(std::min<std::int64_t>(queue.size(), bytes));
}
