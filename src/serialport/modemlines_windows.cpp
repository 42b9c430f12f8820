#include "serialport/modemlines.h"

namespace {
PortFailure result(QSerialPort& serial, bool done)
{
    return done ? PortFailure() : PortFailure{serial.error(), serial.errorString()};
}

struct Row
{
    LineStatus status;
    QSerialPort::PinoutSignal signal;
};

constexpr Row LINES[] = {
    {LS_CTS, QSerialPort::ClearToSendSignal},       {LS_DSR, QSerialPort::DataSetReadySignal},
    {LS_DCD, QSerialPort::DataCarrierDetectSignal}, {LS_RI, QSerialPort::RingIndicatorSignal},
    {LS_RTS, QSerialPort::RequestToSendSignal},     {LS_DTR, QSerialPort::DataTerminalReadySignal},
};
} // namespace

int lines_read(QSerialPort& serial, PortFailure& failure)
{
    serial.clearError();
    const QSerialPort::PinoutSignals on = serial.pinoutSignals();
    failure = result(serial, serial.error() == QSerialPort::NoError);
    if (failure)
        return -1;
    int status = 0;
    for (const Row& row : LINES)
        if (on.testFlag(row.signal))
            status |= row.status;
    return status;
}

PortFailure line_set(QSerialPort& serial, LineStatus line, bool on)
{
    return result(serial,
                  line == LS_DTR ? serial.setDataTerminalReady(on) : serial.setRequestToSend(on));
}

PortFailure break_set(QSerialPort& serial, bool on)
{
    return result(serial, serial.setBreakEnabled(on));
}

void lines_prepare(int, const LinesAtOpen&) {}
