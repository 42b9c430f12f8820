#include "polledport.h"

#include "eventport.h"
#include "portwatch.h"
#include "tty.h"

#include <QEventLoop>
#include <chrono>

using std::chrono::milliseconds;

// Lives on the I/O thread and moves bytes between the QSerialPort and the shared state.
class SerialPump : public QObject
{
    Q_OBJECT

public:
    SerialPump(const QString& name, const PortSettings& settings, PolledState& state);

    bool open(QIODevice::OpenMode mode);
    // Serves the port until the driver asks for the close.
    void run();
    // Takes what the driver has left in the state: bytes to write, a withdrawal, room for more
    // input.
    Q_INVOKABLE void turn();

private:
    void withdraw_output();
    void fetch();
    void append_received(const QByteArray& data);
    void count_written(qint64 bytes);
    void handle_error(QSerialPort::SerialPortError error);
    void fail(QSerialPort::SerialPortError error, const QString& text);

    const QString name;
    const PortSettings settings;
    PolledState& state;
    QSerialPort serial;
    QEventLoop loop;
};

SerialPump::SerialPump(const QString& name, const PortSettings& settings, PolledState& state)
    : name(name)
    , settings(settings)
    , state(state)
{
    tty_settings_prepare(serial, name, settings);
    serial.setReadBufferSize(PolledPort::RECEIVE_LIMIT);
}

bool SerialPump::open(QIODevice::OpenMode mode)
{
    if (!serial.open(mode)) {
        fail(serial.error(), serial.errorString());
        return false;
    }
    const QString refused = tty_settings_finish(serial, settings);
    if (!refused.isNull()) {
        fail(QSerialPort::UnsupportedOperationError, refused);
        return false;
    }
    serial.clearError();
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
        serial_drain_and_close(serial, settings.Timeout_Millisec);
}

void SerialPump::turn()
{
    if (serial.isOpen())
        fetch();
    QByteArray data;
    bool withdraw = false;
    {
        const std::lock_guard lock(state.mutex);
        if (state.closing)
            loop.quit();
        if (!serial.isOpen())
            return;
        withdraw = state.withdraw;
        data.swap(state.outgoing);
        state.in_flight += data.size();
    }
    // The port is called without the lock: what it signals takes the lock itself.
    if (withdraw)
        withdraw_output();
    if (!data.isEmpty())
        serial.write(data);
}

void SerialPump::withdraw_output()
{
    serial.clear(QSerialPort::Output);
    const std::lock_guard lock(state.mutex);
    state.withdraw = false;
    state.in_flight = 0;
    state.changed.notify_all();
}

void SerialPump::fetch()
{
    qint64 room = 0;
    {
        const std::lock_guard lock(state.mutex);
        room = PolledPort::RECEIVE_LIMIT - state.received.size();
    }
    append_received(serial.read(room));
}

void SerialPump::append_received(const QByteArray& data)
{
    const std::lock_guard lock(state.mutex);
    // A copy of its own: the sharing of QByteArray counts where ThreadSanitizer can't see it.
    state.received.append(data.constData(), data.size());
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
        fail(error, serial.errorString());
        return;
    }
    fail(QSerialPort::ResourceError, QextSerialPort::tr("the device has gone"));
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

void SerialPump::fail(QSerialPort::SerialPortError error, const QString& text)
{
    const std::lock_guard lock(state.mutex);
    state.error = error;
    state.error_text = text;
}

// Calls the I/O thread; to be called with the state locked.
static void wake(const PolledState& state)
{
    if (state.pump)
        QMetaObject::invokeMethod(state.pump, "turn", Qt::QueuedConnection);
}

PolledPort::PolledPort(const QString& name, const PortSettings& settings)
    : name(name)
    , settings(settings)
{
}

PolledPort::~PolledPort()
{
    close();
}

bool PolledPort::open(QIODevice::OpenMode mode)
{
    thread = std::thread(&PolledPort::serve, this, mode);
    std::unique_lock lock(state.mutex);
    state.changed.wait(lock, [&] { return state.settled; });
    return state.pump != nullptr;
}

void PolledPort::serve(QIODevice::OpenMode mode)
{
    SerialPump pump(name, settings, state);
    const bool opened = pump.open(mode);
    {
        const std::lock_guard lock(state.mutex);
        state.settled = true;
        state.pump = opened ? &pump : nullptr;
        state.changed.notify_all();
    }
    if (opened)
        pump.run();
    const std::lock_guard lock(state.mutex);
    state.pump = nullptr;
}

void PolledPort::close()
{
    {
        const std::lock_guard lock(state.mutex);
        state.closing = true;
        wake(state);
    }
    if (thread.joinable())
        thread.join();
}

qint64 PolledPort::bytes_available() const
{
    const std::lock_guard lock(state.mutex);
    return state.received.size();
}

qint64 PolledPort::bytes_to_write() const
{
    const std::lock_guard lock(state.mutex);
    return state.outgoing.size() + state.in_flight;
}

bool PolledPort::can_read_line() const
{
    const std::lock_guard lock(state.mutex);
    return state.received.contains('\n');
}

qint64 PolledPort::read(char* data, qint64 size)
{
    const auto deadline =
        std::chrono::steady_clock::now() + milliseconds(settings.Timeout_Millisec);
    std::unique_lock lock(state.mutex);
    qint64 done = 0;
    for (;;) {
        const bool was_full = state.received.size() >= RECEIVE_LIMIT;
        const int count = int(qMin(size - done, qint64(state.received.size())));
        std::copy_n(state.received.constData(), count, data + done);
        state.received.remove(0, count);
        done += count;
        if (was_full && count > 0)
            wake(state);
        if (done == size || state.lost)
            break;
        const auto news = [&] { return !state.received.isEmpty() || state.lost; };
        if (!state.changed.wait_until(lock, deadline, news))
            break;
    }
    return done == 0 && size > 0 && state.lost ? -1 : done;
}

qint64 PolledPort::write(const char* data, qint64 size)
{
    const auto deadline =
        std::chrono::steady_clock::now() + milliseconds(settings.Timeout_Millisec);
    std::unique_lock lock(state.mutex);
    if (state.lost)
        return -1;
    state.outgoing.append(data, int(size));
    wake(state);
    const auto unwritten = [&] { return state.outgoing.size() + state.in_flight; };
    state.changed.wait_until(lock, deadline, [&] { return unwritten() == 0 || state.lost; });
    if (state.lost)
        return -1;
    const qint64 left = unwritten();
    if (left > 0) {
        state.outgoing.clear();
        state.withdraw = true;
        wake(state);
        state.changed.wait(lock, [&] { return !state.withdraw || state.lost; });
        state.error = QSerialPort::TimeoutError;
        state.error_text =
            QextSerialPort::tr("%1 of %2 bytes were not taken in time").arg(left).arg(size);
    }
    return size - left;
}

QString PolledPort::error_string() const
{
    const std::lock_guard lock(state.mutex);
    return state.error_text;
}

QSerialPort::SerialPortError PolledPort::error() const
{
    const std::lock_guard lock(state.mutex);
    return state.error;
}

#include "polledport.moc"
