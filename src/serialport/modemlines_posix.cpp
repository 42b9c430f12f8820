#include "serialport/modemlines.h"

#include <cerrno>
#include <cstring>
#include <sys/ioctl.h>
#ifdef Q_OS_LINUX
#include <sys/sysmacros.h>
#endif

namespace {
struct Row
{
    LineStatus status;
    int system; // as TIOCMGET counts
};

constexpr Row LINES[] = {
    {LS_CTS, TIOCM_CTS}, {LS_DSR, TIOCM_DSR}, {LS_DCD, TIOCM_CD},
    {LS_RI, TIOCM_RI},   {LS_RTS, TIOCM_RTS}, {LS_DTR, TIOCM_DTR},
};

// Why the last system call failed; `missing` says what a port that doesn't know it lacks.
PortFailure failure_of(int code, const QString& missing)
{
    switch (code) {
    case ENOTTY:
    case EINVAL:
    case ENOSYS:
        return {QSerialPort::UnsupportedOperationError, missing};
    case EIO:
    case ENXIO:
    case ENODEV:
        return {QSerialPort::ResourceError, PortTexts::tr("the device has gone")};
    default:
        return {QSerialPort::UnknownError, QString::fromLocal8Bit(std::strerror(code))};
    }
}

PortFailure no_lines(int code)
{
    return failure_of(code, PortTexts::tr("the port has no control lines; a pseudo-terminal and "
                                          "some adapters have none"));
}

int system_bit(LineStatus line)
{
    return line == LS_DTR ? TIOCM_DTR : TIOCM_RTS;
}

PortFailure set_on(int handle, LineStatus line, bool on)
{
    const int bit = system_bit(line);
    return ::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &bit) == 0 ? PortFailure() : no_lines(errno);
}

// The break of a pseudo-terminal succeeds and does nothing.
bool is_pseudo_terminal(int handle)
{
#ifdef Q_OS_LINUX
    constexpr unsigned FIRST_MAJOR = 136;
    constexpr unsigned LAST_MAJOR = 143;
    unsigned device = 0;
    return ::ioctl(handle, TIOCGDEV, &device) == 0 && major(device) >= FIRST_MAJOR &&
           major(device) <= LAST_MAJOR;
#else
    Q_UNUSED(handle)
    return false;
#endif
}
} // namespace

int lines_read(QSerialPort& serial, PortFailure& failure)
{
    int bits = 0;
    if (::ioctl(serial.handle(), TIOCMGET, &bits) != 0) {
        failure = no_lines(errno);
        return -1;
    }
    int status = 0;
    for (const Row& row : LINES)
        if ((bits & row.system) != 0)
            status |= row.status;
    return status;
}

PortFailure line_set(QSerialPort& serial, LineStatus line, bool on)
{
    return set_on(serial.handle(), line, on);
}

PortFailure break_set(QSerialPort& serial, bool on)
{
    const QString missing = PortTexts::tr("the port can't send a break; a pseudo-terminal can't");
    if (is_pseudo_terminal(serial.handle()))
        return {QSerialPort::UnsupportedOperationError, missing};
    return ::ioctl(serial.handle(), on ? TIOCSBRK : TIOCCBRK) == 0 ? PortFailure()
                                                                   : failure_of(errno, missing);
}

void lines_prepare(int descriptor, const LinesAtOpen& lines)
{
    if (descriptor >= 0 && lines.dtr)
        set_on(descriptor, LS_DTR, *lines.dtr);
    if (descriptor >= 0 && lines.rts)
        set_on(descriptor, LS_RTS, *lines.rts);
}
