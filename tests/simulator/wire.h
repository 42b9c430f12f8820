// An open port or socket as a plain descriptor, so that nothing is between test and simulator.
#pragma once

#include "pty.h"

#include <QTcpSocket>
#include <csignal>
#include <poll.h>
#include <unistd.h>

class Wire
{
public:
    explicit Wire(const QString& port) // a path, or 127.0.0.1:port
    {
        std::signal(SIGPIPE, SIG_IGN); // a device may cut its connection while it is talked to
        if (port.startsWith('/')) {
            fd = ::open(QFile::encodeName(port), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
            return;
        }
        QTcpSocket socket;
        socket.connectToHost(port.section(':', 0, 0), port.section(':', 1).toUShort());
        socket.waitForConnected();
        fd = ::dup(int(socket.socketDescriptor()));
    }
    ~Wire() { ::close(fd); }

    // Writes as much as the other side takes now; gives the count.
    int write_some(const QByteArray& bytes)
    {
        return int(qMax(ssize_t(0), ::write(fd, bytes.constData(), size_t(bytes.size()))));
    }
    // Sends all of the request while it reads what comes, as a terminal program would; ends when
    // the answer has that size, when nothing has moved for `quiet_ms` or the device has gone.
    QByteArray exchange(QByteArray request, int answer_size, int quiet_ms = PATIENCE_MS)
    {
        QByteArray answer;
        while (answer.size() < answer_size) {
            pollfd ready = {fd, short(request.isEmpty() ? POLLIN : POLLIN | POLLOUT), 0};
            if (::poll(&ready, 1, quiet_ms) <= 0)
                break;
            if (ready.revents & POLLOUT)
                request.remove(0, write_some(request.left(5000)));
            char part[8192];
            const size_t room = size_t(qMin(answer_size - int(answer.size()), int(sizeof part)));
            const ssize_t count = ready.revents & ~POLLOUT ? ::read(fd, part, room) : -1;
            if (count > 0)
                answer.append(part, int(count));
            else if (ready.revents & ~POLLOUT)
                break;
        }
        return answer;
    }
    QByteArray read(int count, int quiet_ms = PATIENCE_MS) { return exchange({}, count, quiet_ms); }

    int fd = -1;

private:
    Q_DISABLE_COPY(Wire)
};
