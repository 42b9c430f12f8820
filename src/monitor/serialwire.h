// A serial port as a wire. It may come back under another name.
#pragma once

#include "monitor/wire.h"
#include "serialport/qextserialport.h"

#include <functional>
#include <memory>

class SerialWire : public Wire
{
public:
    // `find` gives the port's name now; what is not there gives what the user wrote.
    SerialWire(std::function<QString()> find, const PortSettings& settings,
               const LinesAtOpen& lines);

    bool open() override;
    void close() override;
    int descriptor() const override;
    QString name() const override { return port_name; }
    QStringList folders() const override;
    bool present() const override;
    QextSerialPort* port() override { return serial.get(); }

protected:
    bool reads_nothing_when_idle() const override { return true; }

private:
    const std::function<QString()> find;
    const PortSettings settings;
    const LinesAtOpen lines;
    QString port_name;
    std::unique_ptr<QextSerialPort> serial;
};
