// Other people's programs on the far side of a network link.
#pragma once

#include "pty.h"

#include <QProcess>
#include <memory>

// A program that listens on a loopback port; it ends with this object.
class NetPeer
{
public:
    // socat between a listening address with port 0, as in "TCP-LISTEN:0", and another address.
    static std::unique_ptr<NetPeer> socat(const QString& listen, const QString& other);
    // ser2net in front of a tty.
    static std::unique_ptr<NetPeer> ser2net(const QString& device);
    ~NetPeer();

    int port() const { return tcp_port; }

private:
    QProcess process;
    int tcp_port = 0;
};

// A program with the test's pseudo-terminal behind it.
struct SocatPeer
{
    Pty pty;
    std::unique_ptr<NetPeer> program =
        NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", pty.device() + ",raw,echo=0");
};

struct Ser2netPeer
{
    Pty pty;
    std::unique_ptr<NetPeer> program = NetPeer::ser2net(pty.device());
};
