// A byte link over Qt's sockets: TCP client or UDP.
#pragma once

#include "links/qlink.h"
#include "links/tcpip_cfg.h"

#include <QAbstractSocket>
#include <QList>

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
//   open        closes first; LINK_FAILED. A socket that could not connect stays until close
//   is_open     what the socket says, which after a failed connection is true: call close then, or
//               write gives -1 and read gives 0 at once, without waiting
//   close       0 on a closed link too; bytes that the peer has not yet taken get one more time-out
//   getchar     LINK_IO when none has come
//   putchar     LINK_IO
//   read        ends when nbytes have come or a time-out passes without a byte; a negative result
//               of the socket
//   write       the socket takes all bytes at once and sends on during later calls; 0 or less when
//               it takes none
//   readline    what QIODevice::readLine gives
//
// The log has each change of the socket's state as well.
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
    // Open, and the other side hasn't closed it. That is noticed by an operation, or by an event
    // loop of the socket's thread.
    bool connected() const;
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

    tcpip_cfg cfg = {};
    QAbstractSocket* socket = nullptr; // owned; also that of a failed open, until close
    QList<QAbstractSocket*> retired;   // owned: closed, but maybe still running
    int uses = 0;                      // operations and log lines in progress
    bool opening = false;
    bool verbose = false;
};
