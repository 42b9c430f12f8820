#include "monitor/wire.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

int Wire::send(const char* bytes, int count)
{
    const ssize_t taken = ::write(descriptor(), bytes, std::size_t(count));
    if (taken >= 0)
        return int(taken);
    return errno == EAGAIN || errno == EINTR || !is_stream() ? 0 : -1;
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
