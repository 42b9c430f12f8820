#include "serialport/serialpump_windows.h"

#include "serialport/modemlines.h"
#include "serialport/polledport.h"
#include "serialport/portwatch.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

SerialPump::SerialPump(const QString& name, const PortSettings& settings, PolledState& state)
    : name(name)
    , settings(settings)
    , state(state)
{
    tty_settings_prepare(serial, name, settings);
    serial.setReadBufferSize(PolledPort::AHEAD_LIMIT);
}

bool SerialPump::open(QIODevice::OpenMode mode, const LinesAtOpen& lines)
{
    // Without one no event loop runs, and the pump would spin.
    PortFailure failure;
    if (!QCoreApplication::instance())
        failure = {QSerialPort::OpenError,
                   PortTexts::tr("a polled port needs a QCoreApplication on this system")};
    if (!failure)
        failure = lock.open(serial, mode);
    if (!failure)
        failure = tty_settings_open(serial, settings, mode, lock);
    if (failure) {
        fail(failure);
        return false;
    }
    call([&](QSerialPort& port) { return lines_apply(port, lines); });
    connect(&serial, &QSerialPort::readyRead, this, &SerialPump::fetch);
    connect(&serial, &QSerialPort::bytesWritten, this, &SerialPump::count_written);
    connect(&serial, &QSerialPort::errorOccurred, this, &SerialPump::handle_error);
    return true;
}

void SerialPump::run()
{
    loop.exec();
    serial.disconnect(this);
    if (serial.isOpen())
        drain_and_close();
}

void SerialPump::drain_and_close()
{
    const QDeadlineTimer end(qMax(0L, settings.Timeout_Millisec));
    while (serial.bytesToWrite() > 0 && !end.hasExpired() &&
           serial.waitForBytesWritten(int(end.remainingTime())))
        ;
    serial.clear(QSerialPort::Output);
    serial.close();
}

void SerialPump::turn()
{
    if (serial.isOpen())
        fetch();
    QByteArray data;
    bool withdraw = false;
    bool discard = false;
    {
        const std::lock_guard lock(state.mutex);
        if (state.closing)
            loop.quit();
        if (!serial.isOpen())
            return;
        withdraw = state.withdraw;
        discard = state.discard;
        data.swap(state.outgoing);
        state.in_flight += data.size();
    }
    // The port is called without the lock: what it signals takes the lock itself.
    if (discard)
        discard_input();
    if (withdraw)
        withdraw_output();
    if (!data.isEmpty())
        serial.write(data);
}

bool SerialPump::call(const std::function<PortFailure(QSerialPort&)>& operation)
{
    if (!serial.isOpen())
        return false;
    const PortFailure failure = operation(serial);
    if (failure)
        fail(failure);
    return !failure;
}

void SerialPump::withdraw_output()
{
    serial.clear(QSerialPort::Output);
    const std::lock_guard lock(state.mutex);
    state.withdraw = false;
    state.in_flight = 0;
    state.changed.notify_all();
}

void SerialPump::discard_input()
{
    serial.clear(QSerialPort::Input);
    const std::lock_guard lock(state.mutex);
    state.discard = false;
    state.received.clear();
    state.changed.notify_all();
}

void SerialPump::fetch()
{
    qint64 room = 0;
    {
        const std::lock_guard lock(state.mutex);
        room = PolledPort::AHEAD_LIMIT - state.received.size();
    }
    append_received(serial.read(room));
}

void SerialPump::append_received(const QByteArray& data)
{
    const std::lock_guard lock(state.mutex);
    state.received += data;
    state.changed.notify_all();
}

void SerialPump::count_written(qint64 bytes)
{
    const std::lock_guard lock(state.mutex);
    state.in_flight = qMax(0LL, state.in_flight - bytes);
    state.changed.notify_all();
}

void SerialPump::handle_error(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || !serial.isOpen())
        return;
    if (!tty_lost(serial, error)) {
        fail({error, serial.errorString()});
        return;
    }
    fail({QSerialPort::ResourceError, PortTexts::tr("the device has gone")});
    append_received(serial.readAll());
    {
        const std::lock_guard lock(state.mutex);
        state.lost = true;
        state.changed.notify_all();
    }
    // Left open it would repeat the error in a busy loop.
    serial.disconnect(this);
    serial.close();
    emit PortWatch::instance().lost(name);
}

void SerialPump::fail(const PortFailure& failure)
{
    const std::lock_guard lock(state.mutex);
    state.failure = failure;
}
