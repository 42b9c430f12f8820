// What carries the simulator's bytes to the program under test.
#pragma once

#include <QByteArray>
#include <poll.h>
#include <vector>

class Transport
{
public:
    virtual ~Transport() = default;

    // How the user names the other end: a path or an address.
    virtual QByteArray address() const = 0;
    // The descriptors to wait on. `reading` and `writing` say what the caller would do if it
    // could.
    virtual std::vector<pollfd> watched(bool reading, bool writing) const = 0;
    // To be called after each wait, before read() and write().
    virtual void update() = 0;

    // Is anybody there to read? What is sent to nobody is lost, as on a line with nothing plugged
    // in.
    virtual bool connected() const = 0;
    // What has arrived, at most `most` bytes; never waits.
    virtual QByteArray read(int most) = 0;
    // Sends what can be sent without waiting; gives the number of bytes taken.
    virtual int write(const QByteArray& bytes) = 0;
    // Nothing is left to send: a program that has already said its last word may be let go.
    virtual void drained() {}
    // Breaks the connection, as when a cable is pulled; it can be made again at once.
    virtual void cut() = 0;
};
