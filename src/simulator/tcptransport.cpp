#include "simulator/tcptransport.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

TcpTransport::TcpTransport(int port)
    : port(port)
{
    listener = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in local = {};
    local.sin_family = AF_INET;
    local.sin_port = htons(std::uint16_t(port));
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof local;
    if (::bind(listener, reinterpret_cast<sockaddr*>(&local), size) != 0 ||
        ::listen(listener, 1) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&local), &size) != 0) {
        const std::string reason = std::strerror(errno);
        ::close(listener);
        throw std::runtime_error("can't listen on port " + std::to_string(port) + ": " + reason);
    }
    this->port = ntohs(local.sin_port);
}

TcpTransport::~TcpTransport()
{
    cut();
    ::close(listener);
}

QByteArray TcpTransport::address() const
{
    return "127.0.0.1:" + QByteArray::number(port);
}

std::vector<pollfd> TcpTransport::watched(bool reading, bool writing) const
{
    if (client < 0)
        return {{listener, POLLIN, 0}};
    const bool listening = reading && !heard_all;
    return {{client, short((listening ? POLLIN : 0) | (writing ? POLLOUT : 0)), 0}};
}

void TcpTransport::update()
{
    if (client >= 0)
        return;
    client = ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    const int on = 1; // each reply is one small segment that somebody waits for
    if (client >= 0)
        setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool TcpTransport::connected() const
{
    return client >= 0;
}

QByteArray TcpTransport::read(int most)
{
    if (client < 0 || heard_all)
        return {};
    QByteArray bytes(most, Qt::Uninitialized);
    const ssize_t count = ::recv(client, bytes.data(), size_t(most), 0);
    heard_all = count == 0;
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        cut();
    bytes.truncate(count > 0 ? int(count) : 0);
    return bytes;
}

int TcpTransport::write(const QByteArray& bytes)
{
    const ssize_t count = ::send(client, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
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
    if (client >= 0)
        ::close(client);
    client = -1;
}
