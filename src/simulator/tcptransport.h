// A TCP port that serves one program at a time, as a serial device server does.
#pragma once

#include "serialport/filedescriptor.h"
#include "simulator/transport.h"

// Listens on the loopback address only: a simulated device has no business in the network.
class TcpTransport : public Transport
{
public:
    // Port 0 takes a free one. Throws std::runtime_error, with a text for the user.
    explicit TcpTransport(int port);

    QByteArray address() const override;
    std::vector<pollfd> watched(bool reading, bool writing) const override;
    void update() override;
    bool connected() const override;
    QByteArray read(int most) override;
    int write(const QByteArray& bytes) override;
    // A program that shuts down its sending side still gets all that it has coming.
    void drained() override;
    void cut() override;

private:
    FileDescriptor listener;
    FileDescriptor client;
    int port = 0;
    bool heard_all = false; // the program has shut down its sending side
};
