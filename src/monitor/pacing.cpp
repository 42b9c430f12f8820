#include "monitor/pacing.h"

#include <algorithm>

QByteArray SendQueue::ready(std::int64_t now_ns) const
{
    if (waiting.isEmpty() || now_ns < not_before)
        return {};
    if (pacing.none())
        return waiting;
    if (pacing.char_ns > 0)
        return waiting.left(1);
    int end = 0;
    while (end < waiting.size() && !ends_line(end))
        ++end;
    return waiting.left(end + 1);
}

void SendQueue::taken(int count, std::int64_t now_ns)
{
    if (count <= 0)
        return;
    const bool line = ends_line(count - 1);
    waiting.remove(0, count);
    // From now, not from when it was due: a device that needs the pause needs all of it.
    not_before = now_ns + std::max(pacing.char_ns, line ? pacing.line_ns : 0);
}

std::optional<std::int64_t> SendQueue::due() const
{
    if (waiting.isEmpty())
        return std::nullopt;
    return not_before;
}

bool SendQueue::ends_line(int at) const
{
    const bool before_feed = at + 1 < waiting.size() && waiting[at + 1] == '\n';
    return waiting[at] == '\n' || (waiting[at] == '\r' && !before_feed);
}
