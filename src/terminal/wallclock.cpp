#include "terminal/wallclock.h"

static constexpr int MS_PER_DAY = 24 * 60 * 60 * 1000;

static QTime (*wall_time_source)() = nullptr;

QTime wall_time()
{
    return wall_time_source ? wall_time_source() : QTime::currentTime();
}

void wall_time_source_set(QTime (*source)())
{
    wall_time_source = source;
}

int wall_time_elapsed(const QTime& since, const QTime& now)
{
    const int ms = since.msecsTo(now);
    return ms < 0 ? ms + MS_PER_DAY : ms;
}
