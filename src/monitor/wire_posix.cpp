#include "monitor/wire.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

int Wire::send(const char* bytes, int count)
{
    return result_of(::write(descriptor(), bytes, std::size_t(count)));
}

int Wire::result_of(long taken) const
{
    if (taken >= 0)
        return int(taken);
    // A refused datagram was an earlier one.
    if (errno == EAGAIN || errno == EINTR || (errno == ECONNREFUSED && !is_stream()))
        return 0;
    return is_stream() ? int(GONE) : int(REFUSED);
}

bool Wire::has_ended(long result) const
{
    if (!is_stream() || result > 0)
        return false;
    if (result < 0)
        return errno != EAGAIN && errno != EINTR;
    if (!reads_nothing_when_idle())
        return true;
    pollfd device = {descriptor(), 0, 0};
    return ::poll(&device, 1, 0) == 1 && (device.revents & (POLLHUP | POLLERR)) != 0;
}
