// A TCP connection or UDP datagrams as a wire.
#pragma once

#include "monitor/wire.h"
#include "serialport/filedescriptor.h"

enum class SocketKind { Tcp, Udp, Broadcast };

class SocketWire : public Wire
{
public:
    // A name or an address, IPv6 without brackets; a broadcast needs none.
    SocketWire(SocketKind kind, const QString& host, int remote_port, int timeout_ms);

    // Waits at most the time-out for a connection to each address that the host has.
    bool open() override;
    void close() override { handle.close(); }
    int descriptor() const override { return handle.number(); }
    int send(const char* bytes, int count) override;
    bool is_stream() const override { return kind == SocketKind::Tcp; }
    QString name() const override;
    QStringList folders() const override { return {}; }
    bool present() const override { return true; }

private:
    bool connect_to(const struct addrinfo& address);
    void fail(const QString& reason);

    const SocketKind kind;
    const QString host;
    const int remote_port;
    const int timeout_ms;
    FileDescriptor handle;
};
