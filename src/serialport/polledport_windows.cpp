// The polled port where ports are no file descriptors: a QSerialPort on an I/O thread of its own,
// with a guarded buffer in between.
#include "serialport/polledport.h"

#include "serialport/portwatch.h"
#include "serialport/tty.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <chrono>
#include <condition_variable>
#include <mutex>

using std::chrono::milliseconds;

// The I/O thread never waits, so it answers sooner unless the machine is stuck.
static constexpr milliseconds TURN_LIMIT(1000);

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
    bool discard = false;  // the driver wants nothing of what has arrived
    bool lost = false;
    PortFailure failure;
};

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
    void discard_input();
    void drain_and_close();
    void fetch();
    void append_received(const QByteArray& data);
    void count_written(qint64 bytes);
    void handle_error(QSerialPort::SerialPortError error);
    void fail(const PortFailure& failure);

    const QString name;
    const PortSettings settings;
    PolledState& state;
    TtyDescriptor lock;
    QSerialPort serial;
    QEventLoop loop;
};

SerialPump::SerialPump(const QString& name, const PortSettings& settings, PolledState& state)
    : name(name)
    , settings(settings)
    , state(state)
{
    tty_settings_prepare(serial, name, settings);
    serial.setReadBufferSize(PolledPort::AHEAD_LIMIT);
}

bool SerialPump::open(QIODevice::OpenMode mode)
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

namespace {
// Calls the I/O thread; to be called with the state locked.
void wake(const PolledState& state)
{
    if (state.pump)
        QMetaObject::invokeMethod(state.pump, "turn", Qt::QueuedConnection);
}
} // namespace

PolledPort::PolledPort(const QString& name, const PortSettings& settings)
    : name(name)
    , settings(settings)
    , state(std::make_unique<PolledState>())
{
}

PolledPort::~PolledPort()
{
    close();
}

bool PolledPort::open(QIODevice::OpenMode mode)
{
    thread = std::thread(&PolledPort::serve, this, mode);
    std::unique_lock lock(state->mutex);
    state->changed.wait(lock, [&] { return state->settled; });
    return state->pump != nullptr;
}

void PolledPort::serve(QIODevice::OpenMode mode)
{
    SerialPump pump(name, settings, *state);
    const bool opened = pump.open(mode);
    {
        const std::lock_guard lock(state->mutex);
        state->settled = true;
        state->pump = opened ? &pump : nullptr;
        state->changed.notify_all();
    }
    if (opened)
        pump.run();
    const std::lock_guard lock(state->mutex);
    state->pump = nullptr;
}

void PolledPort::close()
{
    {
        const std::lock_guard lock(state->mutex);
        state->closing = true;
        wake(*state);
    }
    if (thread.joinable())
        thread.join();
}

qint64 PolledPort::bytes_available()
{
    const std::lock_guard lock(state->mutex);
    return state->received.size();
}

qint64 PolledPort::bytes_to_write()
{
    const std::lock_guard lock(state->mutex);
    return state->outgoing.size() + state->in_flight;
}

bool PolledPort::can_read_line()
{
    const std::lock_guard lock(state->mutex);
    return state->received.contains('\n');
}

qint64 PolledPort::read(char* data, qint64 size)
{
    const auto deadline =
        std::chrono::steady_clock::now() + milliseconds(settings.Timeout_Millisec);
    std::unique_lock lock(state->mutex);
    qint64 done = 0;
    for (;;) {
        const bool was_full = state->received.size() >= AHEAD_LIMIT;
        const int count = int(qMin(size - done, qint64(state->received.size())));
        std::copy_n(state->received.constData(), count, data + done);
        state->received.remove(0, count);
        done += count;
        if (was_full && count > 0)
            wake(*state);
        if (done == size || state->lost)
            break;
        const auto news = [&] { return !state->received.isEmpty() || state->lost; };
        if (!state->changed.wait_until(lock, deadline, news))
            break;
    }
    return done == 0 && size > 0 && state->lost ? -1 : done;
}

qint64 PolledPort::write(const char* data, qint64 size)
{
    const auto deadline =
        std::chrono::steady_clock::now() + milliseconds(settings.Timeout_Millisec);
    std::unique_lock lock(state->mutex);
    if (state->lost)
        return -1;
    state->outgoing.append(data, int(size));
    wake(*state);
    const auto unwritten = [&] { return state->outgoing.size() + state->in_flight; };
    state->changed.wait_until(lock, deadline, [&] { return unwritten() == 0 || state->lost; });
    if (state->lost)
        return -1;
    const qint64 left = unwritten();
    if (left > 0) {
        state->outgoing.clear();
        state->withdraw = true;
        wake(*state);
        state->changed.wait_for(lock, TURN_LIMIT, [&] { return !state->withdraw || state->lost; });
        state->failure = {
            QSerialPort::TimeoutError,
            PortTexts::tr("%1 of %2 bytes were not taken in time").arg(left).arg(size)};
    }
    return size - left;
}

void PolledPort::discard_input()
{
    std::unique_lock lock(state->mutex);
    state->received.clear();
    if (!state->pump || state->lost)
        return;
    state->discard = true;
    wake(*state);
    state->changed.wait_for(lock, TURN_LIMIT, [&] { return !state->discard || state->lost; });
}

QString PolledPort::error_string()
{
    const std::lock_guard lock(state->mutex);
    return state->failure.text;
}

QSerialPort::SerialPortError PolledPort::error()
{
    const std::lock_guard lock(state->mutex);
    return state->failure.code;
}

#include "polledport_windows.moc"
