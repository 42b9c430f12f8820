#include "winsock.h"

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

constexpr uint16_t NEWEST_VERSION = 0x0202;
constexpr int VERSION_NOT_SUPPORTED = 10092; // WSAVERNOTSUPPORTED

std::atomic<int> startups{0};

using Clock = std::chrono::steady_clock;

// When a call that begins now has to give up.
class Deadline
{
public:
    Deadline(SOCKET s, int option)
    {
        timeval limit = {};
        socklen_t size = sizeof limit;
        if (::getsockopt(s, SOL_SOCKET, option, &limit, &size) == 0 &&
            (limit.tv_sec != 0 || limit.tv_usec != 0)) {
            bounded = true;
            end = Clock::now() + std::chrono::seconds(limit.tv_sec) +
                  std::chrono::microseconds(limit.tv_usec);
        }
    }

    bool passed() const { return bounded && Clock::now() >= end; }
    // For poll: ms, -1 without a limit.
    int remaining_ms() const
    {
        using std::chrono::milliseconds;
        if (!bounded)
            return -1;
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        return left > 0 ? int(left) : 0;
    }

private:
    bool bounded = false;
    Clock::time_point end;
};

// Repeats a call that a signal has cut short. One that is repeated late may take a second time-out.
template <typename Call> ssize_t through_signals(SOCKET s, int option, Call call)
{
    ssize_t result = call();
    if (result >= 0 || errno != EINTR)
        return result;
    const Deadline deadline(s, option);
    do
        result = call();
    while (result < 0 && errno == EINTR && !deadline.passed());
    return result;
}

// The end of a connect that a signal has cut short: it goes on in the system.
int finish_connect(SOCKET s, const Deadline& deadline)
{
    pollfd writable = {s, POLLOUT, 0};
    int ready = 0;
    do
        ready = ::poll(&writable, 1, deadline.remaining_ms());
    while (ready < 0 && errno == EINTR);
    int error = ready == 0 ? ETIMEDOUT : errno;
    socklen_t size = sizeof error;
    if (ready > 0)
        ::getsockopt(s, SOL_SOCKET, SO_ERROR, &error, &size);
    errno = error;
    return error == 0 ? 0 : SOCKET_ERROR;
}

} // namespace

int WSAStartup(uint16_t version, WSADATA*)
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

uint16_t htons(uint16_t port)
{
    return ::htons(port);
}

uint32_t inet_addr(const char* dotted)
{
    return ::inet_addr(dotted);
}

int connect(SOCKET s, const sockaddr* peer, int size)
{
    const Deadline deadline(s, SO_SNDTIMEO);
    const int result = ::connect(s, peer, socklen_t(size));
    return result < 0 && errno == EINTR ? finish_connect(s, deadline) : result;
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
    return int(
        through_signals(s, SO_RCVTIMEO, [=] { return ::recv(s, buffer, size_t(size), flags); }));
}

int recvfrom(SOCKET s, char* buffer, int size, int flags, sockaddr* from, int* from_size)
{
    socklen_t length = from_size ? socklen_t(*from_size) : 0;
    const ssize_t count = through_signals(s, SO_RCVTIMEO, [&] {
        return ::recvfrom(s, buffer, size_t(size), flags, from, from ? &length : nullptr);
    });
    if (from_size)
        *from_size = int(length);
    return int(count);
}

int send(SOCKET s, const char* buffer, int size, int flags)
{
    const Deadline deadline(s, SO_SNDTIMEO);
    int sent = 0;
    do {
        const ssize_t count = ::send(s, buffer + sent, size_t(size - sent), flags | MSG_NOSIGNAL);
        if (count > 0)
            sent += int(count);
        else if (count < 0 && errno != EINTR)
            break;
    } while (sent < size && !deadline.passed());
    return sent > 0 || size <= 0 ? sent : SOCKET_ERROR;
}

int sendto(SOCKET s, const char* buffer, int size, int flags, const sockaddr* to, int to_size)
{
    return int(through_signals(s, SO_SNDTIMEO, [=] {
        return ::sendto(s, buffer, size_t(size), flags | MSG_NOSIGNAL, to, socklen_t(to_size));
    }));
}

} // namespace winsock

#endif
