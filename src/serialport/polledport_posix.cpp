// The polled port on a file descriptor: each call does its work on the caller's thread, against one
// deadline.
#include "serialport/polledport.h"

#include "serialport/portwatch.h"

#include <QDeadlineTimer>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>

namespace {
// A tty gives no more at once; a line of 3000000 bits/s fills it in 14 ms.
constexpr int CHUNK = 4096;

// More than a driver holds, so that a flood can't keep a discard busy for ever.
constexpr int DISCARD_LIMIT = 1024 * 1024;

// The events that came within the time, POLLHUP and POLLERR among them; 0 for none.
short wait_for(int fd, short events, const QDeadlineTimer& deadline)
{
    pollfd port = {fd, events, 0};
    int ready = 0;
    do
        ready = ::poll(&port, 1, int(qMin(deadline.remainingTime(), qint64(INT_MAX))));
    while (ready < 0 && errno == EINTR);
    return ready > 0 ? port.revents : short(0);
}

bool has_to_wait(ssize_t result)
{
    return result == 0 || errno == EAGAIN || errno == EINTR;
}
} // namespace

PolledPort::PolledPort(const QString& name, const PortSettings& settings)
    : name(name)
    , settings(settings)
{
    tty_settings_prepare(serial, name, settings);
}

PolledPort::~PolledPort()
{
    close();
}

bool PolledPort::open(QIODevice::OpenMode mode)
{
    failure = tty.open(serial, mode);
    // One that is open for reading reads by itself as soon as an event loop runs.
    if (!failure)
        failure = tty_settings_open(serial, settings, QIODevice::WriteOnly, tty);
    if (failure)
        tty.close();
    return !failure;
}

void PolledPort::close()
{
    if (!serial.isOpen())
        return;
    const QDeadlineTimer end = deadline();
    while (!lost && tty_output_queue(serial) > 0 && !end.hasExpired())
        QThread::msleep(OUTPUT_QUEUE_POLL_MS);
    tty_discard_output(serial);
    tty.close();
    serial.close();
}

qint64 PolledPort::bytes_available()
{
    pull_all();
    return ahead.size();
}

qint64 PolledPort::bytes_to_write()
{
    return 0;
}

bool PolledPort::can_read_line()
{
    pull_all();
    return ahead.contains('\n');
}

qint64 PolledPort::read(char* data, qint64 size)
{
    const QDeadlineTimer end = deadline();
    qint64 done = take(data, size);
    while (done < size && !lost) {
        const short events = wait_for(tty.number(), POLLIN, end);
        if (events == 0)
            break;
        if (!pull() && (events & (POLLHUP | POLLERR)) != 0)
            lose();
        done += take(data + done, size - done);
    }
    return done == 0 && size > 0 && lost ? -1 : done;
}

qint64 PolledPort::write(const char* data, qint64 size)
{
    const QDeadlineTimer end = deadline();
    qint64 done = 0;
    while (!lost) {
        const ssize_t count = ::write(tty.number(), data + done, size_t(size - done));
        if (count > 0)
            done += count;
        else if (!has_to_wait(count))
            lose();
        if (lost || done == size || wait_for(tty.number(), POLLOUT, end) == 0)
            break;
    }
    if (lost)
        return -1;
    if (done < size)
        failure = {
            QSerialPort::TimeoutError,
            PortTexts::tr("%1 of %2 bytes were not taken in time").arg(size - done).arg(size)};
    return done;
}

void PolledPort::discard_input()
{
    ahead.clear();
    char chunk[CHUNK];
    ssize_t count = 0;
    // Not tcflush: it leaves what the driver has not yet passed on.
    for (int dropped = 0; dropped < DISCARD_LIMIT; dropped += int(count)) {
        count = ::read(tty.number(), chunk, sizeof chunk);
        if (count <= 0)
            break;
    }
}

QString PolledPort::error_string()
{
    return failure.text;
}

QSerialPort::SerialPortError PolledPort::error()
{
    return failure.code;
}

QDeadlineTimer PolledPort::deadline() const
{
    return QDeadlineTimer(qMax(0L, settings.Timeout_Millisec), Qt::PreciseTimer);
}

// What was read ahead, at most `most` bytes.
qint64 PolledPort::take(char* data, qint64 most)
{
    const int count = int(qMin(most, qint64(ahead.size())));
    std::copy_n(ahead.constData(), count, data);
    ahead.remove(0, count);
    return count;
}

// One read of the system; false when it had nothing.
bool PolledPort::pull()
{
    char chunk[CHUNK];
    const ssize_t count = ::read(tty.number(), chunk, sizeof chunk);
    if (count > 0)
        ahead.append(chunk, int(count));
    else if (!has_to_wait(count))
        lose();
    return count > 0;
}

void PolledPort::pull_all()
{
    while (!lost && ahead.size() < AHEAD_LIMIT && pull())
        ;
}

void PolledPort::lose()
{
    lost = true;
    failure = {QSerialPort::ResourceError, PortTexts::tr("the device has gone")};
    emit PortWatch::instance().lost_in_call(name);
}
