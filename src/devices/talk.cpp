#include "devices/talk.h"

#include <algorithm>

namespace {
constexpr int LARGEST_PORTION = 4096;
constexpr double STREAM_PORTIONS_A_SECOND = 50; // often enough to look steady
} // namespace

Talk::Talk(const TalkSettings& settings, const FaultSettings& faults)
    : settings(settings)
    , text(settings)
    , faults(faults)
    , portion_time(0)
{
    const double units = settings.form == TalkForm::Lines
                             ? double(portion()) / std::max(SHORTEST_LINE, settings.line_length)
                             : portion();
    if (settings.rate > 0)
        portion_time = std::chrono::nanoseconds(std::int64_t(units / settings.rate * 1e9));
}

int Talk::portion() const
{
    if (settings.size > 0)
        return settings.size;
    if (settings.form == TalkForm::Lines)
        return std::max(SHORTEST_LINE, settings.line_length);
    if (settings.rate > 0)
        return std::max(1, int(settings.rate / STREAM_PORTIONS_A_SECOND));
    return LARGEST_PORTION;
}

int Talk::room() const
{
    return LARGEST_PORTION;
}

QByteArray Talk::transmit(int most, Time now)
{
    if (started.isEmpty() && next_wake(now) <= now) {
        const std::int64_t left = settings.bytes < 0 ? portion() : settings.bytes - sent;
        const int count = int(std::min<std::int64_t>(portion(), left));
        started = text.next(count);
        sent += count;
        faults.send_bytes(started);
        // After a time in which nobody read, the pace goes on from now instead of catching up.
        const bool far_behind = now - next_portion > portion_time + std::chrono::milliseconds(100);
        next_portion = (far_behind ? now : next_portion) + portion_time;
    }
    QByteArray bytes = started.left(most);
    started.remove(0, most);
    return bytes;
}

Time Talk::next_wake(Time now) const
{
    if (!started.isEmpty())
        return now;
    if (faults.silent() || (settings.bytes >= 0 && sent >= settings.bytes))
        return NEVER;
    return std::max(now, next_portion);
}
