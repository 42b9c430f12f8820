#include "links/qlinkserial.h"

#include "checksum/hextext.h"

#include <QMetaMethod>
#include <QThread>

QLinkSerial::QLinkSerial(const QString& port_name, const PortSettings& port_settings, bool verbose)
    : port_name(port_name)
    , port_settings(port_settings)
    , verbose(verbose)
{
}

QLinkSerial::~QLinkSerial()
{
    QLinkSerial::close();
}

int QLinkSerial::open()
{
    if (port) {
        emit log(tr("Serial port already opened"));
        return LINK_FAILED;
    }
    error = 0;
    error_text.clear();
    port = new QextSerialPort(port_name, port_settings, QextSerialPort::Polling);
    if (port->open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        if (isSignalConnected(QMetaMethod::fromSignal(&QLinkSerial::removed)))
            watch_removal();
        return 0;
    }

    error = port->lastError();
    error_text = port->errorString();
    emit log(tr("Open %1 failed").arg(port_name));
    delete port;
    port = nullptr;
    return LINK_AGAIN;
}

bool QLinkSerial::is_open()
{
    return port && port->isOpen();
}

int QLinkSerial::close()
{
    if (!port)
        return LINK_CLOSED;
    port->close();
    delete_enumerator();
    delete port;
    port = nullptr;
    return 0;
}

void QLinkSerial::flush()
{
    if (is_open())
        port->discardInput();
}

int QLinkSerial::bytes_available()
{
    return is_open() ? int(port->bytesAvailable()) : LINK_CLOSED;
}

int QLinkSerial::getchar()
{
    if (!is_open())
        return LINK_CLOSED;
    char byte = 0;
    if (!port->getChar(&byte))
        return -int(port->lastError());
    if (verbose)
        emit log(tr("ser: getchar (%1)").arg(std::uint8_t(byte), 2, 16, QChar('0')));
    return std::uint8_t(byte);
}

int QLinkSerial::putchar(int c)
{
    if (!is_open())
        return LINK_CLOSED;
    if (!port->putChar(char(c & 0xFF)))
        return -int(port->lastError());
    if (verbose)
        emit log(tr("ser: putchar (%1)").arg(c, 2, 16, QChar('0')));
    return c;
}

int QLinkSerial::read(char* buffer, int nbytes)
{
    if (!is_open())
        return LINK_CLOSED;
    const qint64 count = port->read(buffer, nbytes);
    log_bytes(QT_TR_NOOP("ser: read    (%1)"), buffer, count);
    return int(count);
}

int QLinkSerial::write(const char* buffer, int nbytes)
{
    if (!is_open())
        return LINK_CLOSED;
    const qint64 count = port->write(buffer, nbytes);
    log_bytes(QT_TR_NOOP("ser: write   (%1)"), buffer, count);
    return int(count);
}

bool QLinkSerial::can_read_line()
{
    return is_open() && port->canReadLine();
}

int QLinkSerial::readline(char* buffer, int size)
{
    if (!is_open())
        return LINK_CLOSED;
    const qint64 count = port->readLine(buffer, size);
    log_bytes(QT_TR_NOOP("ser: readline(%1)"), buffer, count);
    return int(count);
}

void QLinkSerial::dev_remove(QextPortInfo info)
{
    if (info.portName == port_name)
        emit removed();
}

void QLinkSerial::connectNotify(const QMetaMethod& signal)
{
    if (is_open() && signal == QMetaMethod::fromSignal(&QLinkSerial::removed))
        watch_removal();
}

void QLinkSerial::watch_removal()
{
    if (enumerator)
        return;
    // A parent has to live on the thread of its child, and this link may live on another one.
    enumerator = new QextSerialEnumerator(thread() == QThread::currentThread() ? this : nullptr);
    enumerator->setUpNotifications();
    connect(enumerator, &QextSerialEnumerator::deviceRemoved, this, &QLinkSerial::dev_remove);
}

void QLinkSerial::delete_enumerator()
{
    if (!enumerator)
        return;
    enumerator->disconnect(this);
    const QThread* const home = enumerator->thread();
    if (home && home != QThread::currentThread() && home->isRunning())
        enumerator->deleteLater(); // its own thread may be using it right now
    else
        delete enumerator;
    enumerator = nullptr;
}

void QLinkSerial::log_bytes(const char* text, const char* bytes, qint64 count)
{
    if (verbose && count > 0)
        emit log(tr(text).arg(hex_text(bytes, int(count))));
}
