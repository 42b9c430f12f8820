#include "links/winsock.h"

#ifndef _WIN32

#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

namespace winsock {
namespace {

constexpr std::uint16_t NEWEST_VERSION = 0x0202;
constexpr int VERSION_NOT_SUPPORTED = 10092; // WSAVERNOTSUPPORTED

std::atomic<int> startups{0};

using Clock = std::chrono::steady_clock;

// When a call that begins now has to give up. The system's own time-outs of sockets are not used to
// wait: they come up to a tenth too late, and begin anew after each signal.
class Deadline
{
public:
    Deadline(SOCKET s, int option)
        : s(s)
    {
        timeval limit = {};
        socklen_t size = sizeof limit;
        ::getsockopt(s, SOL_SOCKET, option, &limit, &size);
        bounded = limit.tv_sec != 0 || limit.tv_usec != 0;
        end = Clock::now() + std::chrono::seconds(limit.tv_sec) +
              std::chrono::microseconds(limit.tv_usec);
    }

    // True when the socket is ready for `events`, false with errno when it wasn't in time.
    bool wait_for(short events) const
    {
        pollfd state = {s, events, 0};
        for (;;) {
            const int ready = ::poll(&state, 1, remaining_ms());
            if (ready > 0)
                return true;
            if (ready < 0 && errno == EINTR)
                continue;
            if (ready == 0)
                errno = ETIMEDOUT;
            return false;
        }
    }

private:
    // As poll takes it: -1 without a limit.
    int remaining_ms() const
    {
        using std::chrono::milliseconds;
        if (!bounded)
            return -1;
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        return left > 0 ? int(left) : 0;
    }

    const SOCKET s = INVALID_SOCKET;
    bool bounded = false;
    Clock::time_point end = {};
};

bool has_to_wait(ssize_t result)
{
    return result < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
}

// Repeats a call that doesn't block until it has moved something or its time-out has run out.
template <typename Call> int in_time(SOCKET s, int option, short events, Call call)
{
    ssize_t result = call();
    if (has_to_wait(result)) {
        const Deadline deadline(s, option);
        while (has_to_wait(result) && deadline.wait_for(events))
            result = call();
    }
    return int(result);
}

} // namespace

int WSAStartup(std::uint16_t version, WSADATA*)
{
    if (version > NEWEST_VERSION)
        return VERSION_NOT_SUPPORTED;
    ++startups;
    return 0;
}

int WSACleanup()
{
    --startups;
    return 0;
}

int startups_in_use()
{
    return startups;
}

SOCKET socket(int family, int type, int protocol)
{
    const SOCKET s = ::socket(family, type, protocol);
    if (s == INVALID_SOCKET)
        return s;
    ::fcntl(s, F_SETFD, FD_CLOEXEC);
#ifdef SO_NOSIGPIPE // where there is no MSG_NOSIGNAL
    const int on = 1;
    ::setsockopt(s, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    return s;
}

int setsockopt(SOCKET s, int level, int option, const char* value, int size)
{
    if (level != SOL_SOCKET || (option != SO_SNDTIMEO && option != SO_RCVTIMEO))
        return ::setsockopt(s, level, option, value, socklen_t(size));
    int ms = -1;
    if (size == int(sizeof ms))
        std::memcpy(&ms, value, sizeof ms);
    if (ms < 0) {
        errno = EINVAL;
        return SOCKET_ERROR;
    }
    // To the system a zero is no limit at all.
    const timeval limit =
        ms == 0 ? timeval{0, 1} : timeval{ms / 1000, suseconds_t(ms % 1000) * 1000};
    return ::setsockopt(s, level, option, &limit, sizeof limit);
}

std::uint16_t htons(std::uint16_t port)
{
    return ::htons(port);
}

std::uint32_t inet_addr(const char* dotted)
{
    return ::inet_addr(dotted);
}

int connect(SOCKET s, const sockaddr* peer, int size)
{
    const Deadline deadline(s, SO_SNDTIMEO);
    if (::connect(s, peer, socklen_t(size)) == 0)
        return 0;
    // A signal cuts the call short, but the connecting goes on in the system.
    if (errno != EINTR || !deadline.wait_for(POLLOUT))
        return SOCKET_ERROR;
    int error = 0;
    socklen_t error_size = sizeof error;
    ::getsockopt(s, SOL_SOCKET, SO_ERROR, &error, &error_size);
    errno = error;
    return error == 0 ? 0 : SOCKET_ERROR;
}

int closesocket(SOCKET s)
{
    return ::close(s);
}

int ioctlsocket(SOCKET s, unsigned long request, unsigned long* result)
{
    if (request != FIONREAD) {
        errno = EINVAL;
        return SOCKET_ERROR;
    }
    int count = 0;
    if (::ioctl(s, FIONREAD, &count) < 0)
        return SOCKET_ERROR;
    *result = static_cast<unsigned long>(count);
    return 0;
}

int recv(SOCKET s, char* buffer, int size, int flags)
{
    return in_time(s, SO_RCVTIMEO, POLLIN,
                   [=] { return ::recv(s, buffer, size_t(size), flags | MSG_DONTWAIT); });
}

int recvfrom(SOCKET s, char* buffer, int size, int flags, sockaddr* from, int* from_size)
{
    socklen_t length = from_size ? socklen_t(*from_size) : 0;
    const int count = in_time(s, SO_RCVTIMEO, POLLIN, [&] {
        return ::recvfrom(s, buffer, size_t(size), flags | MSG_DONTWAIT, from,
                          from ? &length : nullptr);
    });
    if (from_size)
        *from_size = int(length);
    return count;
}

int send(SOCKET s, const char* buffer, int size, int flags)
{
    const Deadline deadline(s, SO_SNDTIMEO);
    int sent = 0;
    do {
        const ssize_t count =
            ::send(s, buffer + sent, size_t(size - sent), flags | MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count >= 0)
            sent += int(count);
        else if (!has_to_wait(count))
            break;
    } while (sent < size && deadline.wait_for(POLLOUT));
    return sent > 0 || size == 0 ? sent : SOCKET_ERROR;
}

int sendto(SOCKET s, const char* buffer, int size, int flags, const sockaddr* to, int to_size)
{
    return in_time(s, SO_SNDTIMEO, POLLOUT, [=] {
        return ::sendto(s, buffer, size_t(size), flags | MSG_DONTWAIT | MSG_NOSIGNAL, to,
                        socklen_t(to_size));
    });
}

} // namespace winsock

#endif
