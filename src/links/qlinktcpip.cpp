#include "links/qlinktcpip.h"

#include "checksum/hextext.h"

#include <QScopedValueRollback>
#include <QTcpSocket>
#include <QUdpSocket>
#include <iterator>
#include <utility>

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

// While one lives, a socket of the link may be running further down the call stack, in a wait that
// logs a change of state. A handler of that line may close the link, so sockets are deleted only
// after the outermost use.
class QLinkTcpip::SocketUse
{
public:
    explicit SocketUse(QLinkTcpip& link)
        : link(link)
    {
        ++link.uses;
    }
    ~SocketUse()
    {
        if (--link.uses == 0)
            qDeleteAll(std::exchange(link.retired, {}));
    }
    Q_DISABLE_COPY(SocketUse)

private:
    QLinkTcpip& link;
};

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
    this->cfg = tcpip_settings(cfg);
}

void QLinkTcpip::verbose_set(bool verbose)
{
    this->verbose = verbose;
}

int QLinkTcpip::open()
{
    if (opening)
        return LINK_FAILED;
    const QScopedValueRollback<bool> only_once(opening, true);
    // Not only when open: a failed open leaves a socket that may call itself closed.
    close();
    QAbstractSocket* const opened = new_socket(cfg.protocol);
    if (!opened) {
        emit log(tr("tcpip: protocol not supported"));
        return LINK_FAILED;
    }
    socket = opened;
    const SocketUse use(*this);
    connect(opened, &QAbstractSocket::stateChanged, this, &QLinkTcpip::socket_state_display);
    opened->connectToHost(QString::fromLatin1(cfg.addr), std::uint16_t(cfg.remote_port),
                          QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    // Each step may end with the link closed by a handler of its log.
    if (socket && opened->waitForConnected(cfg.timeout) && socket)
        return 0;
    emit log(tr("tcpip: connected failed"));
    return LINK_FAILED;
}

bool QLinkTcpip::is_open()
{
    return socket && socket->isOpen();
}

bool QLinkTcpip::connected() const
{
    return socket && socket->state() == QAbstractSocket::ConnectedState;
}

int QLinkTcpip::close()
{
    QAbstractSocket* const closed = std::exchange(socket, nullptr);
    if (!closed)
        return 0;
    const SocketUse use(*this);
    retired.append(closed);
    closed->close();
    // Closing, not closed: there are bytes that the peer has not taken yet. A time-out below 0
    // would wait for ever.
    if (closed->state() == QAbstractSocket::ClosingState)
        closed->waitForDisconnected(qMax(0, cfg.timeout));
    return 0;
}

void QLinkTcpip::flush()
{
    if (!is_open())
        return;
    const SocketUse use(*this);
    // Where no event loop runs, what came since the last wait is still with the system.
    socket->waitForReadyRead(0);
    const int waiting = bytes_available();
    if (waiting <= 0)
        return;
    if (verbose)
        emit log(tr("tcpip: drop %1 bytes").arg(waiting));
    if (is_open())
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
        emit log(tr("tcpip: getchar (%1)").arg(std::uint8_t(byte), 2, 16, QChar('0')));
    return std::uint8_t(byte);
}

int QLinkTcpip::putchar(int c)
{
    if (!is_open())
        return LINK_CLOSED;
    if (!socket->putChar(char(c & 0xFF)))
        return LINK_IO;
    if (verbose)
        emit log(tr("tcpip: putchar (%1)").arg(c, 2, 16, QChar('0')));
    return c;
}

int QLinkTcpip::read(char* buffer, int nbytes)
{
    if (!is_open())
        return LINK_CLOSED;
    const SocketUse use(*this);
    QAbstractSocket* const source = socket;
    int count = 0;
    while (count < nbytes) {
        // A wait sees new arrivals only. What an earlier one took in is read first, or it would
        // stay unread.
        if (source->bytesAvailable() == 0 && !source->waitForReadyRead(cfg.timeout))
            break;
        if (socket != source) // closed or opened anew by a handler of log
            break;
        const qint64 result = source->read(buffer + count, nbytes - count);
        if (result < 0)
            return int(result);
        count += int(result);
    }
    if (verbose)
        emit log(tr("tcpip: read    (%1)").arg(hex_text(buffer, count)));
    return count;
}

int QLinkTcpip::write(const char* buffer, int nbytes)
{
    if (verbose && is_open())
        emit log(tr("tcpip: write   (%1)").arg(hex_text(buffer, nbytes)));
    if (!is_open()) {
        emit log(tr("tcpip: write failed, connection not opened"));
        return LINK_CLOSED;
    }
    const SocketUse use(*this);
    QAbstractSocket* const target = socket;
    const qint64 taken = target->write(buffer, nbytes);
    if (taken > 0)
        target->flush();
    else
        emit log(tr("tcpip: write failed"));
    return int(taken);
}

bool QLinkTcpip::can_read_line()
{
    return is_open() && socket->canReadLine();
}

int QLinkTcpip::readline(char* buffer, int size)
{
    if (!is_open()) {
        emit log(tr("tcpip: readline failed, connection not opened"));
        return LINK_CLOSED;
    }
    return int(socket->readLine(buffer, size));
}

void QLinkTcpip::socket_state_display(QAbstractSocket::SocketState state)
{
    // Called from inside the socket, maybe by an event loop, where no operation caused it.
    ++uses;
    static constexpr const char* STATES[] = {
        QT_TR_NOOP("tcpip: unconnected"),    QT_TR_NOOP("tcpip: looking up host"),
        QT_TR_NOOP("tcpip: connecting ..."), QT_TR_NOOP("tcpip: connected"),
        QT_TR_NOOP("tcpip: socket bound"),   QT_TR_NOOP("tcpip: listening ..."),
        QT_TR_NOOP("tcpip: closing ..."),
    };
    const auto index = size_t(state);
    emit log(index < std::size(STATES) ? tr(STATES[index]) : tr("tcpip: unknow state"));
    if (--uses > 0)
        return;
    const QList<QAbstractSocket*> closed = std::exchange(retired, {});
    for (QAbstractSocket* each : closed)
        each->deleteLater();
}
