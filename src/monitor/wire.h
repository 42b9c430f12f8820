// A way to a device as a descriptor that is read and written: a serial port or a socket.
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

class QextSerialPort;

// Why a wire could not be opened.
struct WireFault
{
    QString name;   // the port or peer that was tried
    ulong code = 0; // of a port: its lastError()
    QString text;
};

// One thread opens and closes; the descriptor may be read by one and written by another meanwhile.
// It never blocks. What needs POSIX is in wire_posix.cpp.
class Wire
{
public:
    virtual ~Wire() = default;

    // False with fault().
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual int descriptor() const = 0;
    enum SendResult { GONE = -1, REFUSED = -2 };

    // Bytes that were taken, 0 when none can be now, GONE, or REFUSED when the system can't send
    // this datagram, for which errno says why.
    virtual int send(const char* bytes, int count);
    // An end of what is read is an end of the connection. A datagram may be empty, and a refused
    // one doesn't end anything.
    virtual bool is_stream() const { return true; }
    // Whether this result of a read, with its errno, means that the device has gone.
    bool has_ended(long result) const;
    // What a person calls it, as it is now.
    virtual QString name() const = 0;
    // Where a change shows that it may be back; empty where only trying shows it.
    virtual QStringList folders() const = 0;
    // A try makes sense: the device is there, as far as that can be seen.
    virtual bool present() const = 0;
    // For control lines and breaks; null where there are none, and while closed.
    virtual QextSerialPort* port() { return nullptr; }
    const WireFault& fault() const { return last_fault; }

protected:
    // What a system call that sends has given, as send() returns it.
    int result_of(long taken) const;
    // A tty whose reads don't wait gives 0 bytes as long as nothing comes; others at their end.
    virtual bool reads_nothing_when_idle() const { return false; }

    WireFault last_fault;
};
