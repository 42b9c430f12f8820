#include "monitor/serialwire.h"

#include "serialport/qextserialenumerator.h"

#include <QFileInfo>

SerialWire::SerialWire(std::function<QString()> find, const PortSettings& settings,
                       const LinesAtOpen& lines)
    : find(std::move(find))
    , settings(settings)
    , lines(lines)
    , port_name(this->find())
{
}

bool SerialWire::open()
{
    // The path that it had is the first to be tried: a look at all ports takes milliseconds.
    if (!QFileInfo::exists(port_name))
        port_name = find();
    serial = std::make_unique<QextSerialPort>(port_name, settings, QextSerialPort::Polling);
    serial->setLinesAtOpen(lines);
    if (serial->open(QIODevice::ReadWrite))
        return true;
    last_fault = {port_name, serial->lastError(), serial->errorString()};
    serial.reset();
    return false;
}

void SerialWire::close()
{
    serial.reset();
}

int SerialWire::descriptor() const
{
    return serial ? serial->descriptor() : -1;
}

// All of them where ports are, as the name may be a part of what is known of the port.
QStringList SerialWire::folders() const
{
    QStringList folders = {"/dev", QextSerialEnumerator::virtual_ports_folder()};
    const QString own = QFileInfo(port_name).path();
    if (port_name.contains('/') && !folders.contains(own))
        folders.append(own);
    return folders;
}

bool SerialWire::present() const
{
    return QFileInfo::exists(port_name) || QFileInfo::exists(find());
}
