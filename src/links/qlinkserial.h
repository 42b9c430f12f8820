// A byte link over a serial port.
#pragma once

#include "links/qlink.h"
#include "serialport/qextserialenumerator.h"
#include "serialport/qextserialport.h"

// The port works in polling mode: each operation is one call into it and takes at most the time-out
// of the port settings, without an event loop and, but for Windows, without a QCoreApplication. The
// link may be opened on one thread and driven from another, by one thread at a time.
//
//   open        LINK_AGAIN; LINK_FAILED when open already, and the link stays as it is
//   close       LINK_CLOSED on a closed link
//   is_open     true until close, also when the device has gone
//   flush       costs one call of the system when nothing waits; after it nothing is read that had
//               arrived before
//   getchar     the port's lastError negated when no byte came: 0 for a mere time-out, not to be
//               distinguished from a byte 0
//   putchar     the port's lastError negated
//   read        bytes that came within the time-out; -1 when the device has gone and all that it
//               sent has been read; readline likewise
//   write       bytes that went out within the time-out; -1 on a lost device
class QLinkSerial : public QObject, public QLink
{
    Q_OBJECT
    Q_INTERFACES(QLink)

public:
    // `port_name` as QextSerialPort takes it. `verbose`: log every data operation. Opens nothing.
    QLinkSerial(const QString& port_name, const PortSettings& port_settings, bool verbose);
    ~QLinkSerial() override;

    int open() override;
    bool is_open() override;
    int close() override;
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;
    bool can_read_line() override;
    int readline(char* buffer, int size) override;

    // Why the last open failed: lastError() and errorString() of the port. 0 and empty when it
    // didn't.
    ulong open_error() const { return error; }
    QString open_error_text() const { return error_text; }

signals:
    void log(QString s);
    // The device of this link has gone. The link stays open until its owner closes it, which may
    // happen inside this signal. Comes only while the thread that called open runs an event loop.
    // A link to whose signal nobody is connected watches nothing. Connect before the open, or on
    // the thread that opened.
    void removed();

protected:
    void connectNotify(const QMetaMethod& signal) override;

private slots:
    void dev_remove(QextPortInfo info);

private:
    void watch_removal();
    void delete_enumerator();
    void log_bytes(const char* text, const char* bytes, qint64 count);

    QextSerialPort* port = nullptr;             // set while open; owned
    QextSerialEnumerator* enumerator = nullptr; // set while open and watched for; owned
    ulong error = 0;
    QString error_text;
    const QString port_name;
    const PortSettings port_settings;
    const bool verbose = false;
};
