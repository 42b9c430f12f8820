#include "simulator/tcptransport.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

TcpTransport::TcpTransport(int port)
    : listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    , port(port)
{
    const int on = 1;
    setsockopt(listener.number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in local = {};
    local.sin_family = AF_INET;
    local.sin_port = htons(std::uint16_t(port));
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof local;
    if (::bind(listener.number(), reinterpret_cast<sockaddr*>(&local), size) != 0 ||
        ::listen(listener.number(), 1) != 0 ||
        ::getsockname(listener.number(), reinterpret_cast<sockaddr*>(&local), &size) != 0)
        throw std::runtime_error("can't listen on port " + std::to_string(port) + ": " +
                                 std::strerror(errno));
    this->port = ntohs(local.sin_port);
}

QByteArray TcpTransport::address() const
{
    return "127.0.0.1:" + QByteArray::number(port);
}

std::vector<pollfd> TcpTransport::watched(bool reading, bool writing) const
{
    if (!client.is_open())
        return {{listener.number(), POLLIN, 0}};
    const bool listening = reading && !heard_all;
    return {{client.number(), short((listening ? POLLIN : 0) | (writing ? POLLOUT : 0)), 0}};
}

void TcpTransport::update()
{
    if (client.is_open())
        return;
    client = FileDescriptor(
        ::accept4(listener.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    const int on = 1; // each reply is one small segment that somebody waits for
    if (client.is_open())
        setsockopt(client.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool TcpTransport::connected() const
{
    return client.is_open();
}

QByteArray TcpTransport::read(int most)
{
    if (!client.is_open() || heard_all)
        return {};
    QByteArray bytes(most, Qt::Uninitialized);
    const ssize_t count = ::recv(client.number(), bytes.data(), size_t(most), 0);
    heard_all = count == 0;
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        cut();
    bytes.truncate(count > 0 ? int(count) : 0);
    return bytes;
}

int TcpTransport::write(const QByteArray& bytes)
{
    const ssize_t count =
        ::send(client.number(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        cut();
    return count > 0 ? int(count) : 0;
}

void TcpTransport::drained()
{
    if (heard_all)
        cut();
}

void TcpTransport::cut()
{
    heard_all = false;
    client.close();
}
