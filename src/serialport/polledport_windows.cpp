// The polled port where ports are no file descriptors: a SerialPump moves the bytes on an I/O
// thread of its own, with a guarded buffer in between.
#include "serialport/polledport.h"

#include "serialport/modemlines.h"
#include "serialport/serialpump_windows.h"

#include <QThread>
#include <algorithm>
#include <chrono>

using std::chrono::milliseconds;

namespace {

// The I/O thread never waits, so it answers sooner unless the machine is stuck.
constexpr milliseconds TURN_LIMIT(1000);

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

bool PolledPort::open(QIODevice::OpenMode mode, const LinesAtOpen& lines)
{
    thread = std::thread(&PolledPort::serve, this, mode, lines);
    std::unique_lock lock(state->mutex);
    state->changed.wait(lock, [&] { return state->settled; });
    return state->pump != nullptr;
}

void PolledPort::serve(QIODevice::OpenMode mode, const LinesAtOpen& lines)
{
    SerialPump pump(name, settings, *state);
    const bool opened = pump.open(mode, lines);
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

// Has the I/O thread do it, as it alone may touch the QSerialPort.
bool PolledPort::call(const std::function<PortFailure(QSerialPort&)>& operation)
{
    SerialPump* pump = nullptr;
    {
        const std::lock_guard lock(state->mutex);
        pump = state->pump;
    }
    bool done = false;
    if (pump)
        QMetaObject::invokeMethod(
            pump, [&] { done = pump->call(operation); }, Qt::BlockingQueuedConnection);
    return done;
}

int PolledPort::line_status()
{
    int status = -1;
    call([&](QSerialPort& serial) {
        PortFailure failure;
        status = lines_read(serial, failure);
        return failure;
    });
    return status;
}

bool PolledPort::set_line(LineStatus line, bool on)
{
    return call([&](QSerialPort& serial) { return line_set(serial, line, on); });
}

bool PolledPort::send_break(int ms)
{
    if (!call([](QSerialPort& serial) { return break_set(serial, true); }))
        return false;
    QThread::msleep(static_cast<unsigned long>(qMax(0, ms)));
    return call([](QSerialPort& serial) { return break_set(serial, false); });
}

int PolledPort::descriptor() const
{
    return -1;
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
