// The control lines and the break of an open QSerialPort, below both query modes.
#pragma once

#include "serialport/linestatus.h"
#include "serialport/tty.h"

// The LineStatus bits, or -1 with `failure` set.
int lines_read(QSerialPort& serial, PortFailure& failure);

// `line` is LS_DTR or LS_RTS.
PortFailure line_set(QSerialPort& serial, LineStatus line, bool on);

// From here on, until it is switched off, the line is held in the state of a break. A
// pseudo-terminal carries none, and says so here.
PortFailure break_set(QSerialPort& serial, bool on);

// Both lines as they are wished, on a descriptor that was opened a moment ago. The kernel raises
// both in each open; called between and after the opens of a port, this leaves a line that is to be
// off at most microseconds of on, and one that is to be on unchanged. Elsewhere than on POSIX it
// does nothing.
void lines_prepare(int descriptor, const LinesAtOpen& lines);

// The same on the port itself. A port without such lines fails, and is otherwise of use.
PortFailure lines_apply(QSerialPort& serial, const LinesAtOpen& lines);
