#include "serialport/qextserialport.h"

#include "serialport/eventport.h"
#include "serialport/polledport.h"
#include "serialport/portdrain.h"
#include "serialport/portwatch.h"

#include <QSerialPort>

QextSerialPort::QextSerialPort(const QString& name, const PortSettings& settings, QueryMode mode,
                               QObject* parent)
    : QIODevice(parent)
    , name(name)
    , settings(settings)
    , mode(mode)
{
}

QextSerialPort::~QextSerialPort()
{
    close();
}

bool QextSerialPort::open(OpenMode mode)
{
    if (isOpen()) {
        setErrorString(tr("the port is open already"));
        return false;
    }
    // What was accepted before a close still goes out with the settings of its session.
    if (PortDrain* const last = PortDrain::holding(name))
        last->finish();
    const OpenMode device_mode = mode & ~Unbuffered;
    const bool opened = this->mode == Polling ? open_polled(device_mode) : open_event(device_mode);
    if (!opened)
        return false;
    PortWatch::instance().add(name);
    // Unbuffered: the layer below holds what has arrived, and nothing of it twice.
    QIODevice::open(mode | Unbuffered);
    // Open, but without the control lines that were asked for.
    report_unless((event_port ? event_port->error() : polled_port->error()) ==
                  QSerialPort::NoError);
    return true;
}

bool QextSerialPort::open_event(OpenMode mode)
{
    auto* const port = new EventPort(name, settings, WRITE_LIMIT, this);
    if (!port->open(mode, lines_at_open)) {
        report(port->error(), port->error_string());
        delete port;
        return false;
    }
    connect(port, &EventPort::ready_read, this, &QIODevice::readyRead);
    connect(port, &EventPort::bytes_written, this, &QIODevice::bytesWritten);
    connect(port, &EventPort::device_lost, this, [this, port] {
        report(port->error(), port->error_string());
        emit PortWatch::instance().lost(name);
    });
    event_port = port;
    return true;
}

bool QextSerialPort::open_polled(OpenMode mode)
{
    auto port = std::make_unique<PolledPort>(name, settings);
    if (!port->open(mode, lines_at_open)) {
        report(port->error(), port->error_string());
        return false;
    }
    polled_port = std::move(port);
    return true;
}

void QextSerialPort::close()
{
    if (!isOpen())
        return;
    if (event_port) {
        event_port->disconnect(this);
        event_port->close();
        // This may run inside one of its signals.
        event_port->deleteLater();
        event_port = nullptr;
    }
    if (polled_port) {
        polled_port->close();
        polled_port.reset();
    }
    QIODevice::close();
    PortWatch::instance().remove(name);
}

bool QextSerialPort::isSequential() const
{
    return true;
}

qint64 QextSerialPort::bytesAvailable() const
{
    const qint64 waiting = event_port    ? event_port->bytes_available()
                           : polled_port ? polled_port->bytes_available()
                                         : 0;
    return waiting + QIODevice::bytesAvailable();
}

qint64 QextSerialPort::bytesToWrite() const
{
    return event_port    ? event_port->bytes_to_write()
           : polled_port ? polled_port->bytes_to_write()
                         : 0;
}

bool QextSerialPort::canReadLine() const
{
    return (event_port && event_port->can_read_line()) ||
           (polled_port && polled_port->can_read_line()) || QIODevice::canReadLine();
}

void QextSerialPort::discardInput()
{
    if (!isOpen())
        return;
    // QIODevice itself holds what was put back or peeked at.
    const qint64 held = event_port ? bytesAvailable() : QIODevice::bytesAvailable();
    if (held > 0)
        skip(held);
    if (polled_port)
        polled_port->discard_input();
}

QString QextSerialPort::portName() const
{
    return name;
}

ulong QextSerialPort::lastError() const
{
    return last_error;
}

int QextSerialPort::lineStatus()
{
    const int status = event_port    ? event_port->line_status()
                       : polled_port ? polled_port->line_status()
                                     : -1;
    report_unless(status >= 0);
    return status;
}

bool QextSerialPort::setDtr(bool on)
{
    return set_line(LS_DTR, on);
}

bool QextSerialPort::setRts(bool on)
{
    return set_line(LS_RTS, on);
}

bool QextSerialPort::set_line(LineStatus line, bool on)
{
    return report_unless(event_port    ? event_port->set_line(line, on)
                         : polled_port ? polled_port->set_line(line, on)
                                       : false);
}

bool QextSerialPort::breakSend(int ms)
{
    return report_unless(event_port    ? event_port->send_break(ms)
                         : polled_port ? polled_port->send_break(ms)
                                       : false);
}

int QextSerialPort::descriptor() const
{
    return polled_port ? polled_port->descriptor() : -1;
}

qint64 QextSerialPort::readData(char* data, qint64 maxSize)
{
    if (event_port)
        return event_port->read(data, maxSize);
    const qint64 count = polled_port->read(data, maxSize);
    if (count < 0)
        report(polled_port->error(), polled_port->error_string());
    return count;
}

qint64 QextSerialPort::writeData(const char* data, qint64 maxSize)
{
    if (event_port) {
        const qint64 accepted = event_port->write(data, maxSize);
        if (accepted < 0)
            report(event_port->error(), event_port->error_string());
        return accepted;
    }
    const qint64 written = polled_port->write(data, maxSize);
    if (written < maxSize)
        report(polled_port->error(), polled_port->error_string());
    return written;
}

bool QextSerialPort::report_unless(bool done)
{
    if (!done && event_port)
        report(event_port->error(), event_port->error_string());
    else if (!done && polled_port)
        report(polled_port->error(), polled_port->error_string());
    else if (!done)
        report(QSerialPort::NotOpenError, tr("the port is not open"));
    return done;
}

void QextSerialPort::report(ulong error, const QString& text)
{
    last_error = error;
    setErrorString(text);
}
