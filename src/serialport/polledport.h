// The polling side of QextSerialPort: whole reads with a time-out, on any thread, without an event
// loop.
#pragma once

#include "serialport/linestatus.h"
#include "serialport/portsettings.h"

#include <QSerialPort>
#include <QtGlobal>
#include <memory>
#ifdef Q_OS_UNIX
#include "serialport/tty.h"
class QDeadlineTimer;
#else
#include <functional>
#include <thread>
struct PortFailure;
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

    bool open(QIODevice::OpenMode mode, const LinesAtOpen& lines);
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

    // The LineStatus bits, or -1 with an error.
    int line_status();
    bool set_line(LineStatus line, bool on);
    // Waits at most the time-out for the system's queue to go out, and then for the break's end.
    bool send_break(int ms);

    // What poll() takes; -1 while closed and where ports are no descriptors.
    int descriptor() const;

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
    void wait_for_output();
    bool settle(const PortFailure& failure);
    void lose();

    TtyDescriptor tty;  // reads and writes
    QSerialPort serial; // makes the settings
    QByteArray ahead;   // read from the system and by nobody yet
    bool lost = false;
    PortFailure failure;
#else
    void serve(QIODevice::OpenMode mode, const LinesAtOpen& lines);
    bool call(const std::function<PortFailure(QSerialPort&)>& operation);

    std::thread thread;
    const std::unique_ptr<PolledState> state;
#endif
};
