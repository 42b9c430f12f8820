#include "serialport/eventport.h"

#include "serialport/modemlines.h"
#include "serialport/portdrain.h"
#include "serialport/tty.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <algorithm>

EventPort::EventPort(const QString& name, const PortSettings& settings, qint64 write_limit,
                     QObject* parent)
    : QObject(parent)
    , serial(std::make_unique<QSerialPort>())
    , name(name)
    , settings(settings)
    , write_limit(write_limit)
{
    tty_settings_prepare(*serial, name, settings);
    break_timer.setSingleShot(true);
    break_timer.setTimerType(Qt::PreciseTimer);
    connect(&break_timer, &QTimer::timeout, this, &EventPort::end_break);
}

bool EventPort::open(QIODevice::OpenMode mode, const LinesAtOpen& lines)
{
    const auto lock = std::make_shared<TtyDescriptor>();
    PortFailure failure = lock->open(*serial, mode);
    lines_prepare(lock->number(), lines);
    if (!failure)
        failure = tty_settings_open(*serial, settings, mode, *lock);
    if (failure) {
        fail(failure.code, failure.text);
        return false;
    }
    settle(lines_apply(*serial, lines));
    // The lock goes wherever the port is closed, here or by a PortDrain.
    connect(serial.get(), &QSerialPort::aboutToClose, serial.get(), [lock] { lock->close(); });
    connect(serial.get(), &QSerialPort::readyRead, this, &EventPort::announce);
    // While it is inside readyRead a QSerialPort announces nothing: a receiver that opens a box
    // there would hear of no more bytes until the box is closed. The box's event loop is asked
    // instead; queued signals would cost a wake-up of the loop for each chunk.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] {
                if (announcing && serial->bytesAvailable() > 0)
                    emit ready_read();
            });
    connect(serial.get(), &QSerialPort::bytesWritten, this, &EventPort::bytes_written);
    connect(serial.get(), &QSerialPort::errorOccurred, this, &EventPort::handle_error);
    return true;
}

void EventPort::announce()
{
    const QPointer<EventPort> alive = this;
    announcing = true;
    emit ready_read();
    if (alive)
        announcing = false;
}

void EventPort::close()
{
    announcing = false;
    end_break();
    serial->disconnect(this);
    PortDrain::begin(std::move(serial), name, settings.Timeout_Millisec);
}

qint64 EventPort::bytes_available() const
{
    return lost ? leftover.size() : serial->bytesAvailable();
}

qint64 EventPort::bytes_to_write() const
{
    return lost ? 0 : serial->bytesToWrite();
}

bool EventPort::can_read_line() const
{
    return lost ? leftover.contains('\n') : serial->canReadLine();
}

qint64 EventPort::read(char* data, qint64 most)
{
    if (!lost)
        return serial->read(data, most);
    const int count = int(qMin(most, qint64(leftover.size())));
    std::copy_n(leftover.constData(), count, data);
    leftover.remove(0, count);
    return count;
}

qint64 EventPort::write(const char* data, qint64 size)
{
    if (lost)
        return -1;
    const qint64 waiting = serial->bytesToWrite();
    if (waiting > 0 && waiting + size > write_limit) {
        fail(QSerialPort::WriteError,
             PortTexts::tr("%1 bytes wait to be sent, there is no room for %2 more")
                 .arg(waiting)
                 .arg(size));
        return -1;
    }
    const qint64 accepted = serial->write(data, size);
    if (accepted < 0)
        fail(serial->error(), serial->errorString());
    return accepted;
}

int EventPort::line_status()
{
    if (lost)
        return -1;
    PortFailure failure;
    const int status = lines_read(*serial, failure);
    settle(failure);
    return status;
}

bool EventPort::set_line(LineStatus line, bool on)
{
    return !lost && settle(line_set(*serial, line, on));
}

bool EventPort::send_break(int ms)
{
    if (lost || !settle(break_set(*serial, true)))
        return false;
    breaking = true;
    break_timer.start(qMax(0, ms));
    return true;
}

void EventPort::end_break()
{
    break_timer.stop();
    if (breaking && !lost)
        settle(break_set(*serial, false));
    breaking = false;
}

void EventPort::handle_error(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || lost)
        return;
    if (!tty_lost(*serial, error)) {
        fail(error, serial->errorString());
        return;
    }
    fail(QSerialPort::ResourceError, PortTexts::tr("the device has gone"));
    lost = true;
    leftover = serial->readAll();
    serial->disconnect(this);
    serial->close();
    const QPointer<EventPort> alive = this;
    if (!leftover.isEmpty())
        emit ready_read();
    if (alive)
        emit device_lost();
}

void EventPort::fail(QSerialPort::SerialPortError code, const QString& text)
{
    error_code = code;
    error_text = text;
}

// Keeps the failure, if it is one, as the last; whether it is none.
bool EventPort::settle(const PortFailure& failure)
{
    if (failure)
        fail(failure.code, failure.text);
    return !failure;
}
