#include "monitor/socketwire.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace {
QString system_error(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

// 0, or why there is no connection.
int finish_connect(int handle, int timeout_ms)
{
    pollfd waiting = {handle, POLLOUT, 0};
    const int ready = ::poll(&waiting, 1, timeout_ms);
    if (ready <= 0)
        return ready == 0 ? ETIMEDOUT : errno;
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(handle, SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}
} // namespace

SocketWire::SocketWire(SocketKind kind, const QString& host, int remote_port, int timeout_ms)
    : kind(kind)
    , host(kind == SocketKind::Broadcast ? "255.255.255.255" : host)
    , remote_port(remote_port)
    , timeout_ms(timeout_ms)
{
}

bool SocketWire::open()
{
    close();
    addrinfo hints = {};
    hints.ai_socktype = kind == SocketKind::Tcp ? SOCK_STREAM : SOCK_DGRAM;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.toUtf8().constData(),
                                    QByteArray::number(remote_port).constData(), &hints, &found);
    if (error != 0) {
        fail(QString::fromLocal8Bit(::gai_strerror(error)));
        return false;
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
    for (const addrinfo* address = found; address; address = address->ai_next)
        if (connect_to(*address))
            return true;
    return false;
}

bool SocketWire::connect_to(const addrinfo& address)
{
    handle = FileDescriptor(
        ::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!handle.is_open()) {
        fail(system_error(errno));
        return false;
    }
    const int on = 1;
    if (kind == SocketKind::Broadcast)
        ::setsockopt(descriptor(), SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
    if (kind == SocketKind::Tcp)
        ::setsockopt(descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    int error = 0;
    // A socket that is connected to the broadcast address would hear no answer: those come from
    // the addresses of their senders.
    if (kind != SocketKind::Broadcast &&
        ::connect(descriptor(), address.ai_addr, address.ai_addrlen) != 0)
        error = errno == EINPROGRESS ? finish_connect(descriptor(), timeout_ms) : errno;
    if (error == 0)
        return true;
    close();
    fail(system_error(error));
    return false;
}

int SocketWire::send(const char* bytes, int count)
{
    if (kind != SocketKind::Broadcast)
        return Wire::send(bytes, count);
    sockaddr_in everybody = {};
    everybody.sin_family = AF_INET;
    everybody.sin_port = htons(std::uint16_t(remote_port));
    everybody.sin_addr.s_addr = INADDR_BROADCAST;
    return result_of(::sendto(descriptor(), bytes, std::size_t(count), 0,
                              reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody));
}

QString SocketWire::name() const
{
    return (host.contains(':') ? '[' + host + ']' : host) + ':' + QString::number(remote_port);
}

void SocketWire::fail(const QString& reason)
{
    last_fault = {name(), 0, reason};
}
