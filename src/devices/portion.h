// Bytes that a device sends at a time of their own.
#pragma once

#include "devices/device.h"

#include <deque>

struct Portion
{
    Time due{};
    QByteArray bytes;
};

// The first bytes that are due, at most `most`, which leave the queue.
QByteArray take_due(std::deque<Portion>& queue, int most, Time now);
