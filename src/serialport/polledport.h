// The polling side of QextSerialPort: whole reads with a time-out, on any thread, without an event
// loop.
#pragma once

#include "qextserialport.h"

#include <QSerialPort>
#include <condition_variable>
#include <mutex>
#include <thread>

class SerialPump;

// What the driving thread and the I/O thread share; every field is guarded by `mutex`.
struct PolledState
{
    std::mutex mutex;
    std::condition_variable changed;
    QByteArray received;
    QByteArray outgoing;        // what the I/O thread has not yet taken
    qint64 in_flight = 0;       // bytes taken by the I/O thread and not yet written
    SerialPump* pump = nullptr; // set while the I/O thread serves the port
    bool settled = false;       // the open has succeeded or failed
    bool closing = false;
    bool withdraw = false; // the driver gave up on what has not been written
    bool lost = false;
    QSerialPort::SerialPortError error = QSerialPort::NoError;
    QString error_text;
};

// A QSerialPort on an I/O thread of its own. One thread at a time calls; open() and close() belong
// to the same kind of caller and may come from another thread than read() and write().
class PolledPort
{
public:
    // The I/O thread stops reading beyond this many unread bytes; the system's flow control takes
    // over.
    static constexpr int RECEIVE_LIMIT = 64 * 1024;

    PolledPort(const QString& name, const PortSettings& settings);
    ~PolledPort();

    bool open(QIODevice::OpenMode mode);
    void close();

    qint64 bytes_available() const;
    qint64 bytes_to_write() const;
    bool can_read_line() const;
    // Returns when `size` bytes have come, the time-out has run out or the device has gone. -1 only
    // for a lost device of which nothing is left to read.
    qint64 read(char* data, qint64 size);
    // Bytes written within the time-out; what is left over is withdrawn. -1 on a lost device.
    qint64 write(const char* data, qint64 size);

    QString error_string() const;
    QSerialPort::SerialPortError error() const;

private:
    void serve(QIODevice::OpenMode mode);

    const QString name;
    const PortSettings settings;
    std::thread thread;
    mutable PolledState state;
};
