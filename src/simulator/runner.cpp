#include "simulator/runner.h"

#include <algorithm>
#include <sys/prctl.h>

namespace {
// A sleeping process is woken some tens of microseconds late, which is ten bytes at some megabits;
// so it sleeps until this long before the moment and looks at the clock from there.
constexpr std::chrono::microseconds EARLY(60);
} // namespace

Runner::Runner(Device& device, Transport& transport, int baud)
    : device(device)
    , transport(transport)
    , from_host(baud)
    , to_host(baud)
{
    // A frame's end at some megabits is found by tens of microseconds; the usual slack is as long.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

void Runner::run(const volatile std::sig_atomic_t& stop, const sigset_t& while_waiting)
{
    while (!stop) {
        transport.update();
        const Time now = Clock::now();
        host_to_device(now);
        device_to_host(now);
        if (device.wants_cut())
            transport.cut();
        if (finished(now))
            transport.drained();

        const bool may_read = std::min(from_host.room(), device.room()) > 0;
        std::vector<pollfd> fds = transport.watched(may_read, !unsent.isEmpty());
        const Time wake = next_event(now);
        timespec timeout = {};
        if (wake != NEVER) {
            const auto wait = std::max(std::chrono::nanoseconds(0),
                                       std::chrono::nanoseconds(wake - EARLY - Clock::now()));
            timeout.tv_sec = time_t(wait.count() / 1'000'000'000);
            timeout.tv_nsec = long(wait.count() % 1'000'000'000);
        }
        ppoll(fds.data(), nfds_t(fds.size()), wake == NEVER ? nullptr : &timeout, &while_waiting);
    }
}

void Runner::host_to_device(Time now)
{
    if (const int room = std::min(from_host.room(), device.room()); room > 0) {
        const QByteArray bytes = transport.read(room);
        if (!bytes.isEmpty())
            from_host.put(bytes, now);
    }
    const QByteArray arrived = from_host.take(device.room(), now);
    // The line does not wait for this process to be woken: an answer given at once follows the
    // request's last bit.
    answer_starts = arrived.isEmpty() ? now : from_host.last_arrival();
    if (!arrived.isEmpty())
        device.receive(arrived, now);
    if (from_host.empty())
        device.line_idle(now);
}

void Runner::device_to_host(Time now)
{
    if (device_may_send()) {
        const QByteArray bytes = device.transmit(to_host.room(), now);
        if (!bytes.isEmpty())
            to_host.put(bytes, answer_starts);
    }
    unsent += to_host.take(Lane::CAPACITY - int(unsent.size()), now);
    if (!transport.connected())
        unsent.clear();
    else if (!unsent.isEmpty())
        unsent.remove(0, transport.write(unsent));
}

Time Runner::next_event(Time now) const
{
    const Time sends = device_may_send() ? device.next_wake(now) : NEVER;
    const Time leaves = unsent.size() < Lane::CAPACITY ? to_host.next_arrival(now) : NEVER;
    const Time comes = device.room() > 0 ? from_host.next_arrival(now) : NEVER;
    return std::min({sends, leaves, comes});
}

// While the reader lags, only its reading can move anything.
bool Runner::device_may_send() const
{
    return to_host.room() > 0 && unsent.size() < Lane::CAPACITY &&
           (transport.connected() || !device.waits_for_listener());
}

bool Runner::finished(Time now) const
{
    return unsent.isEmpty() && from_host.empty() && to_host.empty() &&
           device.next_wake(now) == NEVER;
}
