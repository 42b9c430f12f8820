// A byte link over the socket calls of the platform: TCP client, UDP and UDP broadcast over IPv4.
#pragma once

#include "links/qlink.h"
#include "links/tcpip_cfg.h"

#include <memory>

struct sockaddr_in;

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
//   open              closes first; LINK_FAILED; the positive result of a failed WSAStartup
//   close             0 on a closed link too
//   bytes_available   of datagrams, the next one's on some systems
//   getchar           LINK_IO when none came in time
//   putchar           LINK_IO
//   read              ends when nbytes have come, or at a time-out or an error, with what has come
//   write             bytes that went out within the time-out, SOCKET_ERROR (-1) for none
//   can_read_line     false
//   readline          0 and an empty line on a closed link; what had come when a byte was late
//
// With both forms of data on, the log has a line for each, the hexadecimal one first. A read logs
// the result of its last system call as well; as text, only when fewer bytes came than asked for,
// and then the buffer holds a NUL after them.
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

    tcpip_cfg cfg = {};
    qintptr sock = -1;   // the platform's; its headers stay out of this one
    bool stream = false; // what sort `sock` is; the settings may have changed since
    const std::unique_ptr<sockaddr_in> remote;
    bool log_hex = false;
    bool log_text = false;
};
