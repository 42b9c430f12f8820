// What PortSettings mean to a QSerialPort, and what it doesn't do by itself on POSIX.
#pragma once

#include "serialport/filedescriptor.h"
#include "serialport/portsettings.h"

#include <QCoreApplication>
#include <QSerialPort>
#include <cstdint>

// What a port says to its user: the texts of QextSerialPort, below which the engines are.
struct PortTexts
{
    Q_DECLARE_TR_FUNCTIONS(QextSerialPort)
};

// Why something failed; false when nothing did.
struct PortFailure
{
    QSerialPort::SerialPortError code = QSerialPort::NoError;
    QString text;

    explicit operator bool() const { return code != QSerialPort::NoError; }
};

// Where the system has the port of this name, as QSerialPort finds it: "ttyUSB0" is /dev/ttyUSB0.
QString tty_device_path(const QString& port_name);

// A descriptor of a port, beside the one that its QSerialPort holds. It carries the lock that other
// terminals ask for (flock), which no QSerialPort takes. Elsewhere than on POSIX it does nothing:
// an open port shuts out others there.
class TtyDescriptor
{
public:
    // Opens and locks the port of `serial`, which is closed yet: whoever has locked the port keeps
    // its settings. Fails only for a locked port; one that can't be opened is left to
    // QSerialPort::open, which says why.
    PortFailure open(const QSerialPort& serial, QIODevice::OpenMode mode);
    void close() { descriptor.close(); }
    // -1 while closed. Reads and writes through it don't block.
    int number() const { return descriptor.number(); }

private:
    FileDescriptor descriptor;
};

// Sets name and settings on a closed port; tty_settings_open() then applies them.
void tty_settings_prepare(QSerialPort& serial, const QString& name, const PortSettings& settings);

// Opens the port with its settings, more than one stop bit where 1.5 are asked for, and makes sure
// that the device took the rate. `descriptor` is the one that was opened for the port before. The
// port is closed after a failure.
PortFailure tty_settings_open(QSerialPort& serial, const PortSettings& settings,
                              QIODevice::OpenMode mode, const TtyDescriptor& descriptor);

// A receiver samples a character of ten bits in the middle of each; past this it can miss the last.
constexpr int RATE_TOLERANCE_PERCENT = 3;

// Whether a device that runs at `actual` bits/s can talk to one at `asked`.
bool rate_is_close(std::int64_t asked, std::int64_t actual);

// Whether an error of the port means that its device has gone for good. A QSerialPort calls the end
// of a pseudo-terminal a mere read error, with whatever reason errno holds.
bool tty_lost(const QSerialPort& serial, QSerialPort::SerialPortError error);

// The rate that an open tty runs at, bits/s; 0 where the system doesn't report it.
std::int64_t tty_rate(int handle);

// Bytes that the system has accepted for the device but not yet sent.
int tty_output_queue(QSerialPort& serial);

// The system doesn't say when that queue is empty; who waits for it asks this often, in ms.
constexpr int OUTPUT_QUEUE_POLL_MS = 2;

// Before a close, which the system would hold up for as long as that queue isn't empty.
void tty_discard_output(QSerialPort& serial);
