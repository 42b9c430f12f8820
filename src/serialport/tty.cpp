#include "tty.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
// The kernel's own termios, for free rates; it can't be in one file with <termios.h>.
#include <asm/termbits.h>
#include <poll.h>
#include <sys/ioctl.h>
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

bool rate_is_close(qint64 asked, qint64 actual)
{
    return qAbs(asked - actual) * 100 <= asked * RATE_TOLERANCE_PERCENT;
}

#ifdef Q_OS_LINUX

QString tty_settings_finish(QSerialPort& serial, const PortSettings& settings)
{
    termios2 tio = {};
    if (ioctl(serial.handle(), TCGETS2, &tio) != 0)
        return QCoreApplication::translate("QextSerialPort", "the device gives no settings");
    // QSerialPort falls back to one stop bit. CSTOPB is 1.5 with five data bits and 2 with the
    // others.
    if (settings.StopBits == STOP_1_5) {
        tio.c_cflag |= CSTOPB;
        if (ioctl(serial.handle(), TCSETS2, &tio) != 0)
            return QCoreApplication::translate("QextSerialPort",
                                               "the device refuses 1.5 stop bits");
    }
    // A driver that can't make a rate doesn't fail: it takes another one and says which.
    if (!rate_is_close(settings.BaudRate, tio.c_ospeed))
        return QCoreApplication::translate("QextSerialPort",
                                           "the device refuses %1 bits/s and offers %2")
            .arg(int(settings.BaudRate))
            .arg(tio.c_ospeed);
    return {};
}

bool tty_lost(const QSerialPort& serial, QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::ResourceError)
        return true;
    pollfd device = {serial.handle(), 0, 0};
    return error == QSerialPort::ReadError && poll(&device, 1, 0) == 1 &&
           (device.revents & (POLLHUP | POLLERR)) != 0;
}

qint64 tty_rate(int handle)
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

QString tty_settings_finish(QSerialPort&, const PortSettings&)
{
    return {};
}

bool tty_lost(const QSerialPort&, QSerialPort::SerialPortError error)
{
    return error == QSerialPort::ResourceError;
}

qint64 tty_rate(int)
{
    return 0;
}

int tty_output_queue(QSerialPort&)
{
    return 0;
}

#endif
