// A link to a simulated device in the same process, in simulated time: a wait for bytes skips to
// the moment at which something happens, so that hours of time-outs pass in seconds.
#pragma once

#include "devices/device.h"
#include "devices/lane.h"

#include <algorithm>
#include <memorylink.h>

// What the caller computes or sleeps counts as well, as real time. The device isn't owned.
class SimulatedLink : public MemoryLink
{
public:
    // baud in bits/s, 0 for no pace; `timeout` is the longest that one read waits.
    SimulatedLink(Device& device, int baud, std::chrono::milliseconds timeout)
        : device(device)
        , timeout(timeout)
        , from_host(baud)
        , to_host(baud)
    {
    }

    // The line is cut, like a serial port whose adapter was pulled out, and whole again.
    bool cut() const { return lost; }
    void mend(int baud)
    {
        from_host = to_host = Lane(baud);
        MemoryLink::flush();
        lost = false;
    }

    void flush() override
    {
        pass_bytes();
        MemoryLink::flush();
    }
    int read(char* buffer, int nbytes) override
    {
        const Time deadline = now() + timeout;
        for (pass_bytes(); unread().size() < nbytes && !lost && now() < deadline; pass_bytes()) {
            const auto step = std::min(next_event(passed_until), deadline) - now();
            skipped += std::max(std::chrono::nanoseconds(0), std::chrono::nanoseconds(step));
        }
        return lost && unread().isEmpty() ? int(LINK_FAILED) : MemoryLink::read(buffer, nbytes);
    }
    int write(const char* buffer, int nbytes) override
    {
        pass_bytes(); // what was sent before came by itself, with a gap after it
        if (lost)
            return LINK_FAILED;
        from_host.put(QByteArray(buffer, nbytes), now()); // no frame is longer than its room
        pass_bytes();
        return nbytes;
    }

private:
    Time now() const { return Clock::now() + skipped; }

    // The caller may have slept: what happened meanwhile happened at its own time and in its order.
    void pass_bytes()
    {
        constexpr std::chrono::microseconds LEAST_STEP(1);
        const Time moment = now();
        for (Time at = passed_until; at < moment && !lost;) {
            at = std::min(moment, std::max(at + LEAST_STEP, next_event(at)));
            pass_bytes_at(at);
        }
        passed_until = moment;
    }
    void pass_bytes_at(Time moment)
    {
        const QByteArray arrived = from_host.take(device.room(), moment);
        if (!arrived.isEmpty())
            device.receive(arrived, moment);
        if (from_host.empty())
            device.line_idle(moment);
        const QByteArray answered = device.transmit(to_host.room(), moment);
        if (!answered.isEmpty())
            to_host.put(answered, moment);
        arrive(to_host.take(Lane::CAPACITY, moment));
        lost = device.wants_cut();
    }
    Time next_event(Time after) const
    {
        return std::min(
            {device.next_wake(after), from_host.next_arrival(after), to_host.next_arrival(after)});
    }

    Device& device;
    std::chrono::milliseconds timeout;
    std::chrono::nanoseconds skipped{0};
    Time passed_until{}; // nothing is left to happen before
    Lane from_host;
    Lane to_host;
    bool lost = false;
};
