// One direction of the line: holds bytes for as long as a real line of the given rate would take
// to carry them.
#pragma once

#include "devices/device.h"

class Lane
{
public:
    // What may be on the way at once. A host hands over whole frames, so this is more than a wire.
    static constexpr int CAPACITY = 8192;

    // baud in bits per second, with ten bits to a byte (start, eight, stop); 0 for no delay at all.
    explicit Lane(int baud);

    int room() const { return CAPACITY - int(queue.size()); }
    bool empty() const { return queue.isEmpty(); }
    void put(const QByteArray& bytes, Time now);
    // The bytes whose last bit has arrived by now, at most `most`.
    QByteArray take(int most, Time now);
    // When the last byte that was taken had arrived.
    Time last_arrival() const { return taken_until; }
    // The time at which take() is worth calling again; NEVER when nothing is on the way.
    Time next_arrival(Time now) const;

private:
    int arrived(Time now) const;

    std::chrono::nanoseconds byte_time;
    QByteArray queue;
    Time taken_until{};
    Time front_starts{}; // when the first bit of the first byte in the queue went out
};
