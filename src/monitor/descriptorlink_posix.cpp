#include "monitor/descriptorlink.h"

#include "capture/capturerecord.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {
constexpr int CHUNK = 65536; // a datagram is read whole
}

DescriptorLink::DescriptorLink(Wire& wire, int timeout_ms, int gap_ms, const Tap& tap)
    : wire(wire)
    , timeout_ms(timeout_ms)
    , gap_ms(gap_ms)
    , tap(tap)
{
}

void DescriptorLink::flush()
{
    while (pull())
        ;
    ahead.clear();
}

int DescriptorLink::bytes_available()
{
    pull();
    return int(ahead.size());
}

int DescriptorLink::getchar()
{
    char byte = 0;
    return read(&byte, 1) == 1 ? std::uint8_t(byte) : int(LINK_IO);
}

int DescriptorLink::putchar(int c)
{
    const char byte = char(c & 0xff);
    return write(&byte, 1) == 1 ? c : int(LINK_IO);
}

int DescriptorLink::read(char* buffer, int nbytes)
{
    bool silent = ahead.isEmpty() && !(wait_for(POLLIN, timeout_ms) && pull());
    while (!silent && ahead.size() < nbytes && wire.is_stream())
        silent = !(wait_for(POLLIN, gap_ms) && pull());
    const int count = int(std::min(qint64(nbytes), qint64(ahead.size())));
    if (count == 0)
        return lost ? -1 : 0;
    std::copy_n(ahead.constData(), count, buffer);
    if (log.isEmpty())
        log_ns = ahead_ns;
    log.append(buffer, count);
    ahead.remove(0, count);
    return count;
}

int DescriptorLink::write(const char* buffer, int nbytes)
{
    int done = 0;
    bool refused = false;
    while (done < nbytes && !lost && !refused) {
        const int count = wire.send(buffer + done, nbytes - done);
        refused = count == Wire::REFUSED;
        lost = count < 0 && !refused;
        if (tap && count > 0)
            tap({capture_time_ns(),
                 QByteArray(buffer + done, count),
                 Direction::Out,
                 false,
                 false,
                 {}});
        done += std::max(0, count);
        if (done < nbytes && !lost && !refused && !wait_for(POLLOUT, timeout_ms))
            break;
    }
    write_failed = done < nbytes;
    return lost || refused ? -1 : done;
}

bool DescriptorLink::can_read_line()
{
    pull();
    return ahead.contains('\n');
}

QByteArray DescriptorLink::taken(std::int64_t& time_ns)
{
    time_ns = log_ns;
    QByteArray bytes = log;
    log.clear();
    return bytes;
}

bool DescriptorLink::wait_for(short events, int ms)
{
    pollfd waiting = {wire.descriptor(), events, 0};
    int ready = 0;
    do
        ready = ::poll(&waiting, 1, ms);
    while (ready < 0 && errno == EINTR);
    return ready > 0;
}

// One read of the system; false when it had nothing.
bool DescriptorLink::pull()
{
    char chunk[CHUNK];
    const ssize_t count = ::read(wire.descriptor(), chunk, sizeof chunk);
    if (count > 0) {
        const std::int64_t now = capture_time_ns();
        if (ahead.isEmpty())
            ahead_ns = now;
        ahead.append(chunk, int(count));
        if (tap)
            tap({now, QByteArray(chunk, int(count)), Direction::In, false, false, {}});
    } else {
        lost = wire.has_ended(count);
    }
    return count > 0;
}
