// The event-driven side of QextSerialPort: a QSerialPort that goes quiet when its device has gone.
#pragma once

#include "serialport/linestatus.h"
#include "serialport/portsettings.h"

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QTimer>
#include <memory>

struct PortFailure;

// A QSerialPort whose device has gone repeats its error in a busy loop. This one closes it at the
// first. Receivers of its signals may delete it.
class EventPort : public QObject
{
    Q_OBJECT

public:
    // At most write_limit bytes wait to be written, unless one write to an idle port is larger.
    EventPort(const QString& name, const PortSettings& settings, qint64 write_limit,
              QObject* parent);

    bool open(QIODevice::OpenMode mode, const LinesAtOpen& lines);
    // The end of this object's work: a PortDrain lets accepted bytes out, and nothing but the
    // destructor may be called any more.
    void close();

    qint64 bytes_available() const;
    qint64 bytes_to_write() const;
    bool can_read_line() const;
    qint64 read(char* data, qint64 most);
    // All of it, or -1 with an error.
    qint64 write(const char* data, qint64 size);

    // The LineStatus bits, or -1 with an error.
    int line_status();
    bool set_line(LineStatus line, bool on);
    // Starts one, or lets the one that is on last ms from now.
    bool send_break(int ms);

    QString error_string() const { return error_text; }
    QSerialPort::SerialPortError error() const { return error_code; }

signals:
    void ready_read();
    void bytes_written(qint64 bytes);
    void device_lost();

private:
    void announce();
    void handle_error(QSerialPort::SerialPortError error);
    void end_break();
    bool settle(const PortFailure& failure);
    void fail(QSerialPort::SerialPortError code, const QString& text);

    std::unique_ptr<QSerialPort> serial; // null once closed
    const QString name;
    const PortSettings settings;
    const qint64 write_limit;
    QByteArray leftover;     // what had arrived when the device went away
    bool announcing = false; // inside ready_read
    bool lost = false;
    bool breaking = false; // until break_timer ends it
    QTimer break_timer;
    QSerialPort::SerialPortError error_code = QSerialPort::NoError;
    QString error_text;
};
