// What PortSettings mean to a QSerialPort, and the two things that it doesn't do by itself on
// POSIX.
#pragma once

#include "qextserialport.h"

#include <QSerialPort>

// Sets name and settings on a closed port; open() then applies them.
void tty_settings_prepare(QSerialPort& serial, const QString& name, const PortSettings& settings);

// After a successful open: sends more than one stop bit where 1.5 are asked for, and makes sure
// that the device took the rate. A null string, or what was refused.
QString tty_settings_finish(QSerialPort& serial, const PortSettings& settings);

// A receiver samples a character of ten bits in the middle of each; past this it can miss the last.
constexpr int RATE_TOLERANCE_PERCENT = 3;

// Whether a device that runs at `actual` bits/s can talk to one at `asked`.
bool rate_is_close(qint64 asked, qint64 actual);

// Whether an error of the port means that its device has gone for good. A QSerialPort calls the end
// of a pseudo-terminal a mere read error, with whatever reason errno holds.
bool tty_lost(const QSerialPort& serial, QSerialPort::SerialPortError error);

// The rate that an open tty runs at, bits/s; 0 where the system doesn't tell.
qint64 tty_rate(int handle);

// Bytes that the system has accepted for the device but not yet sent.
int tty_output_queue(QSerialPort& serial);
