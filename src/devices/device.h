// What a simulated device is to the rest of the simulator: bytes in, bytes out, and a sense of
// time. It knows neither the transport that carries its bytes nor the pace of the line.
#pragma once

#include <QByteArray>
#include <chrono>

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;
constexpr Time NEVER = Time::max();

class Device
{
public:
    virtual ~Device() = default;

    // How many bytes the device can take now. While it is 0 the line holds the host back, so a host
    // that never reads costs no memory.
    virtual int room() const = 0;
    // Bytes from the host, at most room() of them.
    virtual void receive(const QByteArray& bytes, Time now) = 0;
    // Nothing more is on the way from the host at this moment.
    virtual void line_idle(Time) {}

    // Gives up to `most` bytes that are to go out now.
    virtual QByteArray transmit(int most, Time now) = 0;
    // When the device wants to be asked again although nothing has come: NEVER for no such wish, a
    // time that has passed for at once.
    virtual Time next_wake(Time now) const = 0;

    // With nobody at the other end, what a device sends is lost. One that has all the time in the
    // world may wait for a listener instead.
    virtual bool waits_for_listener() const { return false; }

    // The device wants to lose its connection now, as when somebody pulls the plug.
    virtual bool wants_cut() { return false; }
};
