// A byte link over the socket calls of the platform: TCP client, UDP and UDP broadcast over IPv4.
#pragma once

#include "qlink.h"
#include "tcpip_cfg.h"
#include "winsock.h"

// The lines of QLinkWinsock::log. The ones marked h come while log_hex is on, the ones marked t
// while log_text is on; with both, each has a line of its own, h first.
//
//   STARTUP_FAILED, NO_PROTOCOL, SOCKET_FAILED, SEND_TIMEOUT_FAILED, RECEIVE_TIMEOUT_FAILED,
//   BROADCAST_FAILED        the step at which open ended
//   CONNECT_FAILED          the same; %1 the remote address, %2 the remote port
//   DROPPED           h     after a flush that dropped something; %1 the count of bytes
//   GETCHAR           h     a byte was read; %1 the byte in hexadecimal, at least 2 digits
//   PUTCHAR           h     a byte was written; %1 the argument of putchar, in the same form
//   READ              h     at the end of each read; %1 the result of the last system call, %2
//                           hex_text of all bytes read
//   READ              t     after a read of fewer bytes than asked for; %2 the bytes as text
//   WRITE             h t   before sending; %1 hex_text of the bytes, or the bytes as text
//   WRITE_CLOSED            write on a closed link
namespace winsock_log {
constexpr char STARTUP_FAILED[] = QT_TRANSLATE_NOOP("QLinkWinsock", "winsock: WSAStartup failed");
constexpr char NO_PROTOCOL[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: protocol not supported");
constexpr char SOCKET_FAILED[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: create socket failed");
constexpr char SEND_TIMEOUT_FAILED[] =
    QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: set socket sending timeout failed");
constexpr char RECEIVE_TIMEOUT_FAILED[] =
    QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: set socket receiving timeout failed");
constexpr char BROADCAST_FAILED[] =
    QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: set socket broadcast opt failed");
constexpr char CONNECT_FAILED[] =
    QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: connect to host %1:%2 failed");
constexpr char DROPPED[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: drop %1 bytes");
constexpr char GETCHAR[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: getchar [%1]");
constexpr char PUTCHAR[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: putchar [%1]");
constexpr char READ[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: read(%1)[%2]");
constexpr char WRITE[] = QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: write   [%1]");
constexpr char WRITE_CLOSED[] =
    QT_TRANSLATE_NOOP("QLinkWinsock", "tcpip: write failed, connection not opened");
} // namespace winsock_log

// Every call blocks for at most one time-out per system call; a read makes one system call for each
// piece that comes. No ties to a thread: it may be created, opened and driven on different ones,
// one at a time.
//
//   protocol              socket     peer
//   TCPIP_TCP_CLIENT      stream     addr, connected
//   TCPIP_TCP_SERVER      none: open gives LINK_FAILED, and so for a negative one
//   TCPIP_UDP_BROADCAST   datagram   255.255.255.255
//   any other             datagram   addr; no group is joined for multicast
//
// `addr` is a dotted IPv4 address; ip_version and the local port are not used.
//
//   operation         closed        open
//   open              0; LINK_FAILED; the positive result of a failed WSAStartup
//                                   closes first, then the same
//   close             0             0
//   bytes_available   LINK_CLOSED   count; of datagrams the next one's on some systems
//   getchar           LINK_CLOSED   byte, LINK_IO when none came in time
//   putchar           LINK_CLOSED   the argument, LINK_IO
//   read              LINK_CLOSED   count, also after a time-out or an error; ends when nbytes have
//                                   come, or a time-out passes without a byte
//   write             LINK_CLOSED   bytes that went out within the time-out, SOCKET_ERROR (-1) for
//                                   none
//   can_read_line     false         false
//   readline          0, an empty line   the line, or what had come when a byte was late
class QLinkWinsock : public QObject, public QLink
{
    Q_OBJECT
    Q_INTERFACES(QLink)

public:
    explicit QLinkWinsock(const tcpip_cfg* cfg);
    ~QLinkWinsock() override;

    // Copies the settings, the defaults for null. They count from the next open.
    void settings_set(const tcpip_cfg* cfg);
    // Log data in hexadecimal. Off at first.
    void log_hex_set(bool on);
    // Log data as text. Off at first.
    void log_text_set(bool on);

    int open() override;
    bool is_open() override;
    int close() override;
    // Of datagrams that never cease to come, those of one time-out.
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;

signals:
    void log(QString s);

private:
    int create_socket();
    // The log line of the option that the socket refused, or null.
    const char* refused_option();
    int fail(const QString& line);

    tcpip_cfg cfg;
    SOCKET sock = INVALID_SOCKET;
    bool stream = false; // what sort `sock` is; the settings may have changed since
    sockaddr_in remote = {};
    bool log_hex = false;
    bool log_text = false;
};
