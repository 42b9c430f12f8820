#include "simulatedlink.h"

#include <algorithm>
#include <cstring>

SimulatedLink::SimulatedLink(Device& device, int baud, std::chrono::milliseconds timeout)
    : device(device)
    , baud(baud)
    , timeout(timeout)
    , from_host(baud)
    , to_host(baud)
{
}

int SimulatedLink::open()
{
    if (opened)
        return LINK_FAILED;
    unsent.clear();
    received.clear();
    from_host = Lane(baud);
    to_host = Lane(baud);
    lost = false;
    opened = true;
    return 0;
}

int SimulatedLink::close()
{
    if (!opened)
        return LINK_CLOSED;
    opened = false;
    return 0;
}

void SimulatedLink::flush()
{
    pass_bytes();
    received.clear();
}

int SimulatedLink::bytes_available()
{
    pass_bytes();
    return opened ? int(received.size()) : LINK_CLOSED;
}

int SimulatedLink::getchar()
{
    char byte = 0;
    const int count = read(&byte, 1);
    return count == 1 ? quint8(byte) : count < 0 ? count : int(LINK_IO);
}

int SimulatedLink::putchar(int c)
{
    const char byte = char(c & 0xFF);
    const int count = write(&byte, 1);
    return count < 0 ? count : c;
}

int SimulatedLink::read(char* buffer, int nbytes)
{
    if (!opened)
        return LINK_CLOSED;
    const Time deadline = now() + timeout;
    for (pass_bytes(); received.size() < nbytes && !lost && now() < deadline; pass_bytes()) {
        const Time moment = std::min(next_event(passed_until), deadline);
        skipped += std::max(std::chrono::nanoseconds(0), std::chrono::nanoseconds(moment - now()));
    }
    if (received.isEmpty() && lost)
        return LINK_FAILED;
    const int count = std::min(nbytes, int(received.size()));
    std::memcpy(buffer, received.constData(), size_t(count));
    received.remove(0, count);
    return count;
}

int SimulatedLink::write(const char* buffer, int nbytes)
{
    if (!opened)
        return LINK_CLOSED;
    pass_bytes(); // what was sent before came by itself, with a gap after it
    if (lost)
        return LINK_FAILED;
    unsent.append(buffer, nbytes);
    pass_bytes();
    return nbytes;
}

// The caller may have slept: what happened meanwhile happened at its own time and in its order.
void SimulatedLink::pass_bytes()
{
    const Time moment = now();
    Time at = std::min(moment, next_event(passed_until));
    while (!lost) {
        pass_bytes_at(at);
        if (at == moment)
            break;
        constexpr std::chrono::microseconds LEAST_STEP(1);
        at = std::min(moment, std::max(at + LEAST_STEP, next_event(at)));
    }
    passed_until = moment;
}

void SimulatedLink::pass_bytes_at(Time moment)
{
    const int fits = std::min(from_host.room(), int(unsent.size()));
    if (fits > 0)
        from_host.put(unsent.left(fits), moment);
    unsent.remove(0, fits);
    const QByteArray arrived = from_host.take(device.room(), moment);
    if (!arrived.isEmpty())
        device.receive(arrived, moment);
    if (from_host.empty())
        device.line_idle(moment);
    const QByteArray answered = device.transmit(to_host.room(), moment);
    if (!answered.isEmpty())
        to_host.put(answered, moment);
    received += to_host.take(Lane::CAPACITY, moment);
    lost = device.wants_cut();
}

Time SimulatedLink::next_event(Time after) const
{
    return std::min(
        {device.next_wake(after), from_host.next_arrival(after), to_host.next_arrival(after)});
}
