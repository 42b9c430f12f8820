// A byte link over Qt's sockets: TCP client or UDP.
#pragma once

#include "qlink.h"
#include "tcpip_cfg.h"

#include <QAbstractSocket>
#include <QList>

// The lines of QLinkTcpip::log. The ones marked v come only while verbose.
//
//   NO_PROTOCOL         open: the settings name a protocol that this link doesn't have
//   CONNECT_FAILED      open: no connection within the time-out
//   DROPPED         v   flush, when there was something to drop; %1 the count of bytes
//   GETCHAR         v   a byte was read; %1 the byte in hexadecimal, at least 2 digits
//   PUTCHAR         v   a byte was written; %1 the argument of putchar, in the same form
//   READ            v   at the end of each read, also of none; %1 hex_text of the bytes
//   WRITE           v   before the bytes go out; %1 hex_text of them
//   WRITE_FAILED        the socket took nothing
//   WRITE_CLOSED        write on a closed link
//   READLINE_CLOSED     readline on a closed link
//   STATES              each change of the socket's state, by its number; UNKNOWN_STATE beyond them
namespace tcpip_log {
constexpr char NO_PROTOCOL[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: protocol not supported");
constexpr char CONNECT_FAILED[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: connected failed");
constexpr char DROPPED[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: drop %1 bytes");
constexpr char GETCHAR[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: getchar (%1)");
constexpr char PUTCHAR[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: putchar (%1)");
constexpr char READ[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: read    (%1)");
constexpr char WRITE[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: write   (%1)");
constexpr char WRITE_FAILED[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: write failed");
constexpr char WRITE_CLOSED[] =
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: write failed, connection not opened");
constexpr char READLINE_CLOSED[] =
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: readline failed, connection not opened");
constexpr const char* STATES[] = {
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: unconnected"),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: looking up host"),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: connecting ..."),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: connected"),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: socket bound"),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: listening ..."),
    QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: closing ..."),
};
constexpr char UNKNOWN_STATE[] = QT_TRANSLATE_NOOP("QLinkTcpip", "tcpip: unknow state");
} // namespace tcpip_log

// Works without an event loop. The socket belongs to the thread that calls open, which is the one
// that drives the link and closes it.
//
//   protocol            socket
//   TCPIP_TCP_CLIENT    QTcpSocket
//   TCPIP_UDP           QUdpSocket, connected to the remote address
//   any other           none: open gives LINK_FAILED
//
// `addr` may be an address of either version or a host's name; ip_version and the local port are
// not used.
//
//   operation         closed        open
//   open              0, LINK_FAILED   closes first, then the same
//   close             0             0; bytes that the peer has not yet taken get one more time-out
//   bytes_available   LINK_CLOSED   count
//   getchar           LINK_CLOSED   byte, LINK_IO when none has come
//   putchar           LINK_CLOSED   the argument, LINK_IO
//   read              LINK_CLOSED   count; ends when nbytes have come or a time-out passes without
//                                   a byte; a negative result of the socket
//   write             LINK_CLOSED   count: the socket takes all bytes at once and sends on during
//                                   later calls; 0 or less when it takes none
//   can_read_line     false         whether a line feed waits
//   readline          LINK_CLOSED   what QIODevice::readLine gives
//
// Only read waits for bytes. bytes_available, getchar, can_read_line and readline see what the
// socket has taken in during a read, a flush or in an event loop of its thread.
//
// A handler of log may close or open the link: an operation in progress then ends with what it has.
// Opening a link that is being opened gives LINK_FAILED and changes nothing. The link itself must
// outlive its operations and the delivery of log.
class QLinkTcpip : public QObject, public QLink
{
    Q_OBJECT
    Q_INTERFACES(QLink)

public:
    explicit QLinkTcpip(const tcpip_cfg* cfg);
    ~QLinkTcpip() override;

    // Copies the settings, the defaults for null. They count from the next open; the time-out
    // counts at once.
    void settings_set(const tcpip_cfg* cfg);
    // Log every data operation. Off at first.
    void verbose_set(bool verbose);

    int open() override;
    bool is_open() override;
    int close() override;
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;
    bool can_read_line() override;
    int readline(char* buffer, int size) override;

signals:
    void log(QString s);

private slots:
    void socket_state_display(QAbstractSocket::SocketState state);

private:
    class SocketUse;

    tcpip_cfg cfg;
    QAbstractSocket* socket = nullptr; // owned; also that of a failed open, until close
    QList<QAbstractSocket*> retired;   // owned: closed, but maybe still running
    int uses = 0;                      // operations and log lines in progress
    bool opening = false;
    bool verbose = false;
};
