#include "simulated.h"

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <random>
#include <sys/socket.h>

Wire::Wire(const QString& port)
{
    if (port.startsWith('/')) {
        fd = ::open(QFile::encodeName(port), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        return;
    }
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port.section(':', 1).toUShort());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        ::fcntl(fd, F_SETFL, O_NONBLOCK);
}

int Wire::write_some(const QByteArray& bytes)
{
    // A device may cut its connection while it is being talked to.
    ssize_t count = ::send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    if (count < 0 && errno == ENOTSOCK)
        count = ::write(fd, bytes.constData(), size_t(bytes.size()));
    return count > 0 ? int(count) : 0;
}

QByteArray Wire::exchange(const QByteArray& request, int answer_size, int quiet_ms)
{
    QByteArray answer;
    for (int sent = 0; answer.size() < answer_size;) {
        pollfd ready = {fd, short(POLLIN | (sent < request.size() ? POLLOUT : 0)), 0};
        if (::poll(&ready, 1, quiet_ms) <= 0 || (ready.revents & (POLLIN | POLLOUT)) == 0)
            break;
        if (ready.revents & POLLOUT)
            sent += write_some(request.mid(sent, 5000));
        char part[8192];
        const int room = qMin(answer_size - int(answer.size()), int(sizeof part));
        const ssize_t count = ready.revents & POLLIN ? ::read(fd, part, size_t(room)) : -1;
        if (count == 0)
            break;
        answer.append(part, int(qMax(count, ssize_t(0))));
    }
    return answer;
}

QByteArray random_bytes(int count, quint64 seed)
{
    std::mt19937_64 random(seed);
    QByteArray bytes(count, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(random() & 0xFF);
    return bytes;
}
