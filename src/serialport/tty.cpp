#include "serialport/tty.h"

#include <QFile>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#endif
#ifdef Q_OS_LINUX
// The kernel's own termios, for free rates; it can't be in one file with <termios.h>.
#include <asm/termbits.h>
#include <poll.h>
#include <sys/ioctl.h>
#endif

namespace {
PortFailure locked_elsewhere()
{
    return {QSerialPort::PermissionError,
            PortTexts::tr("another program has locked the port; close it there, or choose "
                          "another port")};
}
} // namespace

#ifdef Q_OS_UNIX

QString tty_device_path(const QString& port_name)
{
    const bool is_path =
        port_name.startsWith('/') || port_name.startsWith("./") || port_name.startsWith("../");
    return is_path ? port_name : "/dev/" + port_name;
}

PortFailure TtyDescriptor::open(const QSerialPort& serial, QIODevice::OpenMode mode)
{
    const bool both = (mode & QIODevice::ReadWrite) == QIODevice::ReadWrite;
    const int direction = both ? O_RDWR : (mode & QIODevice::ReadOnly) ? O_RDONLY : O_WRONLY;
    descriptor =
        FileDescriptor(::open(QFile::encodeName(tty_device_path(serial.portName())).constData(),
                              direction | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    const bool locked = descriptor.is_open()
                            ? ::flock(number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK
                            : errno == EBUSY;
    if (!locked)
        return {};
    close();
    return locked_elsewhere();
}

#else

QString tty_device_path(const QString& port_name)
{
    return port_name;
}

PortFailure TtyDescriptor::open(const QSerialPort&, QIODevice::OpenMode)
{
    return {};
}

#endif

void tty_settings_prepare(QSerialPort& serial, const QString& name, const PortSettings& settings)
{
    static constexpr QSerialPort::Parity PARITIES[] = {
        QSerialPort::NoParity, QSerialPort::OddParity, QSerialPort::EvenParity,
        QSerialPort::MarkParity, QSerialPort::SpaceParity};
    static constexpr QSerialPort::StopBits STOP_BITS[] = {
        QSerialPort::OneStop, QSerialPort::OneAndHalfStop, QSerialPort::TwoStop};
    static constexpr QSerialPort::FlowControl FLOWS[] = {
        QSerialPort::NoFlowControl, QSerialPort::HardwareControl, QSerialPort::SoftwareControl};

    serial.setPortName(name);
    serial.setBaudRate(settings.BaudRate);
    serial.setDataBits(QSerialPort::DataBits(settings.DataBits));
    serial.setParity(PARITIES[qBound(0, int(settings.Parity), 4)]);
    serial.setStopBits(STOP_BITS[qBound(0, int(settings.StopBits), 2)]);
    serial.setFlowControl(FLOWS[qBound(0, int(settings.FlowControl), 2)]);
}

bool rate_is_close(std::int64_t asked, std::int64_t actual)
{
    return qAbs(asked - actual) * 100 <= asked * RATE_TOLERANCE_PERCENT;
}

#ifdef Q_OS_LINUX

namespace {
// What QSerialPort leaves undone. What the device refuses, or a null string.
QString finish_settings(QSerialPort& serial, const PortSettings& settings)
{
    termios2 tio = {};
    if (ioctl(serial.handle(), TCGETS2, &tio) != 0)
        return PortTexts::tr("the device gives no settings");
    // QSerialPort switches the receiver on for a port that it reads itself, and falls back to one
    // stop bit. CSTOPB is 1.5 with five data bits and 2 with the others.
    tio.c_cflag |= CREAD;
    if (settings.StopBits == STOP_1_5)
        tio.c_cflag |= CSTOPB;
    if (ioctl(serial.handle(), TCSETS2, &tio) != 0)
        return PortTexts::tr("the device refuses its settings");
    // A driver that can't make a rate doesn't fail: it takes another one and says which.
    if (!rate_is_close(settings.BaudRate, tio.c_ospeed))
        return PortTexts::tr("the device refuses %1 bits/s and offers %2")
            .arg(int(settings.BaudRate))
            .arg(tio.c_ospeed);
    return {};
}
} // namespace

bool tty_lost(const QSerialPort& serial, QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::ResourceError)
        return true;
    pollfd device = {serial.handle(), 0, 0};
    return error == QSerialPort::ReadError && poll(&device, 1, 0) == 1 &&
           (device.revents & (POLLHUP | POLLERR)) != 0;
}

std::int64_t tty_rate(int handle)
{
    termios2 tio = {};
    return ioctl(handle, TCGETS2, &tio) == 0 ? tio.c_ospeed : 0;
}

int tty_output_queue(QSerialPort& serial)
{
    int waiting = 0;
    return ioctl(serial.handle(), TIOCOUTQ, &waiting) == 0 ? waiting : 0;
}

#else

namespace {
QString finish_settings(QSerialPort&, const PortSettings&)
{
    return {};
}
} // namespace

bool tty_lost(const QSerialPort&, QSerialPort::SerialPortError error)
{
    return error == QSerialPort::ResourceError;
}

std::int64_t tty_rate(int)
{
    return 0;
}

int tty_output_queue(QSerialPort&)
{
    return 0;
}

#endif

PortFailure tty_settings_open(QSerialPort& serial, const PortSettings& settings,
                              QIODevice::OpenMode mode, const TtyDescriptor& descriptor)
{
    if (!serial.open(mode)) {
        // The rights to the device are there; it is the lock file that somebody else holds.
        if (serial.error() == QSerialPort::PermissionError && descriptor.number() >= 0)
            return locked_elsewhere();
        return {serial.error(), serial.errorString()};
    }
    const QString refused = finish_settings(serial, settings);
    if (!refused.isNull()) {
        serial.close();
        return {QSerialPort::UnsupportedOperationError, refused};
    }
    serial.clearError();
    return {};
}

void tty_discard_output(QSerialPort& serial)
{
    if (serial.isOpen() && tty_output_queue(serial) > 0)
        serial.clear(QSerialPort::Output);
}
