// The polling side of QextSerialPort: whole reads with a time-out, on any thread, without an event
// loop.
#pragma once

#include "serialport/portsettings.h"

#include <QSerialPort>
#include <QtGlobal>
#include <memory>
#ifdef Q_OS_UNIX
#include "serialport/tty.h"
class QDeadlineTimer;
#else
#include <thread>
struct PolledState;
#endif

// One thread at a time calls; open() and close() may come from another thread than read() and
// write(). Where ports are file descriptors the caller's thread does all the work
// (polledport_posix.cpp); elsewhere a QSerialPort on a thread of its own does
// (polledport_windows.cpp).
class PolledPort
{
public:
    // As many unread bytes are taken from the system ahead of a read; its flow control holds the
    // others.
    static constexpr int AHEAD_LIMIT = 64 * 1024;

    PolledPort(const QString& name, const PortSettings& settings);
    ~PolledPort();

    bool open(QIODevice::OpenMode mode);
    // Waits at most the time-out for the system's queue to go out, and discards the rest.
    void close();

    // At most AHEAD_LIMIT.
    qint64 bytes_available();
    qint64 bytes_to_write();
    bool can_read_line();
    // Returns when `size` bytes have come, the time-out has run out or the device has gone. -1 only
    // for a lost device of which nothing is left to read.
    qint64 read(char* data, qint64 size);
    // Bytes that the system has taken within the time-out. -1 on a lost device.
    qint64 write(const char* data, qint64 size);
    // Drops all that has arrived before the call.
    void discard_input();

    QString error_string();
    QSerialPort::SerialPortError error();

private:
    const QString name;
    const PortSettings settings;

#ifdef Q_OS_UNIX
    QDeadlineTimer deadline() const;
    qint64 take(char* data, qint64 most);
    bool pull();
    void pull_all();
    void lose();

    TtyDescriptor tty;  // reads and writes
    QSerialPort serial; // makes the settings
    QByteArray ahead;   // read from the system and by nobody yet
    bool lost = false;
    PortFailure failure;
#else
    void serve(QIODevice::OpenMode mode);

    std::thread thread;
    const std::unique_ptr<PolledState> state;
#endif
};
