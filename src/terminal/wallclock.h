// The time of day that frames and stamps go by, and a way to put another clock in its place.
#pragma once

#include <QTime>

QTime wall_time();

// For tests: `source` is asked instead of the system from now on; nullptr goes back to the system.
void wall_time_source_set(QTime (*source)());

// Milliseconds from `since` to now, also past midnight.
int wall_time_elapsed(const QTime& since, const QTime& now);
