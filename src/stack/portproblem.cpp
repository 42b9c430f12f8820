#include "stack/portproblem.h"

#include "serialport/portdetails.h"

#include <QSerialPort>

namespace {
QString holder_names(const QString& port)
{
    QStringList programs;
    for (const PortHolder& holder : port_holders(port))
        programs.append(shown(holder));
    return programs.join(", ");
}
} // namespace

QString full_port_name(const QString& name)
{
    if (name.contains('/') || name.contains('\\'))
        return name;
    const QStringList found = ports_named(name, QextSerialEnumerator::getPorts());
    if (found.size() > 1)
        throw LinkProblem{LinkTrouble::SeveralPorts, name, found.join(", ")};
    return found.isEmpty() ? name : found[0];
}

LinkProblem port_problem(const QString& port, unsigned long error, const QString& reason)
{
    switch (port_bar(port, {})) {
    case PortBar::Missing:
        return {LinkTrouble::NoSuchPort, port};
    case PortBar::NoPort:
        return {LinkTrouble::NotAPort, port};
    case PortBar::Rights:
        return {LinkTrouble::NoRights, port};
    case PortBar::Locked:
    case PortBar::None:
        break;
    }
    // The rights are there, so that somebody else has it.
    if (error == QSerialPort::PermissionError)
        return {LinkTrouble::Busy, port, reason, holder_names(port)};
    if (error == QSerialPort::UnsupportedOperationError)
        return {LinkTrouble::BadSettings, port, reason};
    return {LinkTrouble::PortFailed, port, reason};
}
