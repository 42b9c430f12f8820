// Other people's programs on the far side of a network link.
#pragma once

#include <QProcess>
#include <memory>

// A program that listens on a loopback port; it ends with this object.
class NetPeer
{
public:
    // socat between a listening address with port 0, as in "TCP-LISTEN:0", and another address.
    static std::unique_ptr<NetPeer> socat(const QString& listen, const QString& other);
    // ser2net that serves a tty.
    static std::unique_ptr<NetPeer> ser2net(const QString& device);
    ~NetPeer();

    int port() const { return tcp_port; }

private:
    QProcess process;
    int tcp_port = 0;
};
