// What the system knows of a port beside its name: stable names, adapter, driver, who holds it, and
// why it can't be opened. Nothing is opened for it, as an open moves the control lines.
#pragma once

#include "serialport/qextserialenumerator.h"

#include <QString>
#include <QStringList>
#include <QVector>

// Where it is read from. Elsewhere than on Linux there is nothing there, and little is known.
struct PortRoots
{
    QString by_id = "/dev/serial/by-id";
    QString sys = "/sys";
    QString proc = "/proc";
};

// Who a port is, whatever name the system gave it this time. What isn't known is empty.
struct PortIdentity
{
    QStringList stable_names; // links in by_id, without the folder
    QString usb_id;           // "0403:6001"
    QString serial_number;    // of the adapter
    QString driver;           // "ftdi_sio"
};
PortIdentity port_identity(const QextPortInfo& port, const PortRoots& roots = {});

struct PortHolder
{
    qint64 pid;
    QString program;
    bool locked; // by the lock that terminals ask for, so that they can't open the port
};
// The other programs that have the port open, as far as this user may see them. Who made a
// pseudo-terminal has both sides open and isn't meant.
QVector<PortHolder> port_holders(const QString& port_name, const PortRoots& roots = {});
QString shown(const PortHolder& holder); // "picocom (4711)"

enum class PortBar {
    None,    // nothing that is known is in the way
    Missing, // no such device
    NoPort,  // a file or folder
    Rights,  // this user may not read and write it
    Locked,  // by a program
};
PortBar port_bar(const QString& port_name, const QVector<PortHolder>& holders);
// The group whose members may use the device; empty where there is none.
QString port_group(const QString& port_name);

// The names of the ports that `text` names. A port's name, the last part of it and a stable name
// win over any part of name, description, maker, ids and driver. A part never cuts a number in two:
// ttyUSB1 is no part of ttyUSB10. Upper and lower case are the same in a part.
QStringList ports_named(const QString& text, const QList<QextPortInfo>& ports,
                        const PortRoots& roots = {});
