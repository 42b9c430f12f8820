#include "serialport/modemlines.h"

PortFailure lines_apply(QSerialPort& serial, const LinesAtOpen& lines)
{
    PortFailure failure;
    if (lines.dtr)
        failure = line_set(serial, LS_DTR, *lines.dtr);
    if (!failure && lines.rts)
        failure = line_set(serial, LS_RTS, *lines.rts);
    return failure;
}
