#include "qlinktcpip.h"

#include "hextext.h"

#include <QTcpSocket>
#include <QUdpSocket>
#include <iterator>

namespace {

QAbstractSocket* new_socket(int protocol)
{
    switch (protocol) {
    case TCPIP_TCP_CLIENT:
        return new QTcpSocket;
    case TCPIP_UDP:
        return new QUdpSocket;
    default:
        return nullptr;
    }
}

} // namespace

QLinkTcpip::QLinkTcpip(const tcpip_cfg* cfg)
{
    settings_set(cfg);
}

QLinkTcpip::~QLinkTcpip()
{
    QLinkTcpip::close();
}

void QLinkTcpip::settings_set(const tcpip_cfg* cfg)
{
    this->cfg = cfg ? *cfg : tcpip_defaults();
}

void QLinkTcpip::verbose_set(bool verbose)
{
    this->verbose = verbose;
}

int QLinkTcpip::open()
{
    // Not only when open: a failed open leaves a socket that may call itself closed.
    close();
    socket = new_socket(cfg.protocol);
    if (!socket) {
        emit log(tr(tcpip_log::NO_PROTOCOL));
        return LINK_FAILED;
    }
    connect(socket, &QAbstractSocket::stateChanged, this, &QLinkTcpip::socket_state_display);
    socket->connectToHost(QString::fromLatin1(cfg.addr), quint16(cfg.remote_port),
                          QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    if (socket->waitForConnected(cfg.timeout))
        return 0;
    emit log(tr(tcpip_log::CONNECT_FAILED));
    return LINK_FAILED;
}

bool QLinkTcpip::is_open()
{
    return socket && socket->isOpen();
}

int QLinkTcpip::close()
{
    if (!socket)
        return 0;
    socket->close();
    // Closing, not closed: there are bytes that the peer has not taken yet.
    if (socket->state() == QAbstractSocket::ClosingState)
        socket->waitForDisconnected(cfg.timeout);
    delete socket;
    socket = nullptr;
    return 0;
}

void QLinkTcpip::flush()
{
    const int waiting = bytes_available();
    if (waiting <= 0)
        return;
    if (verbose)
        emit log(tr(tcpip_log::DROPPED).arg(waiting));
    socket->readAll();
}

int QLinkTcpip::bytes_available()
{
    return is_open() ? int(socket->bytesAvailable()) : LINK_CLOSED;
}

int QLinkTcpip::getchar()
{
    if (!is_open())
        return LINK_CLOSED;
    char byte = 0;
    if (!socket->getChar(&byte))
        return LINK_IO;
    if (verbose)
        emit log(tr(tcpip_log::GETCHAR).arg(quint8(byte), 2, 16, QChar('0')));
    return quint8(byte);
}

int QLinkTcpip::putchar(int c)
{
    if (!is_open())
        return LINK_CLOSED;
    if (!socket->putChar(char(c & 0xFF)))
        return LINK_IO;
    if (verbose)
        emit log(tr(tcpip_log::PUTCHAR).arg(c, 2, 16, QChar('0')));
    return c;
}

int QLinkTcpip::read(char* buffer, int nbytes)
{
    if (!is_open())
        return LINK_CLOSED;
    int count = 0;
    while (count < nbytes) {
        // A wait sees new arrivals only. What an earlier one took in is read first, or it would
        // stay behind.
        if (socket->bytesAvailable() == 0 && !socket->waitForReadyRead(cfg.timeout))
            break;
        const qint64 result = socket->read(buffer + count, nbytes - count);
        if (result < 0)
            return int(result);
        count += int(result);
    }
    if (verbose)
        emit log(tr(tcpip_log::READ).arg(hex_text(buffer, count)));
    return count;
}

int QLinkTcpip::write(const char* buffer, int nbytes)
{
    if (!is_open()) {
        emit log(tr(tcpip_log::WRITE_CLOSED));
        return LINK_CLOSED;
    }
    if (verbose)
        emit log(tr(tcpip_log::WRITE).arg(hex_text(buffer, nbytes)));
    const qint64 taken = socket->write(buffer, nbytes);
    if (taken > 0)
        socket->flush();
    else
        emit log(tr(tcpip_log::WRITE_FAILED));
    return int(taken);
}

bool QLinkTcpip::can_read_line()
{
    return is_open() && socket->canReadLine();
}

int QLinkTcpip::readline(char* buffer, int size)
{
    if (!is_open()) {
        emit log(tr(tcpip_log::READLINE_CLOSED));
        return LINK_CLOSED;
    }
    return int(socket->readLine(buffer, size));
}

void QLinkTcpip::socket_state_display(QAbstractSocket::SocketState state)
{
    const auto index = size_t(state);
    emit log(tr(index < std::size(tcpip_log::STATES) ? tcpip_log::STATES[index]
                                                     : tcpip_log::UNKNOWN_STATE));
}
