#include "cli/portadvice.h"

#include <QFileInfo>
#include <QSerialPort>

namespace {
const char LIST_ADVICE[] = "`tarnwickctl ports` lists the ports of this machine.";
} // namespace

QString full_port_name(const QString& name)
{
    if (name.contains('/') || name.contains('\\'))
        return name;
    const QStringList found = ports_named(name, QextSerialEnumerator::getPorts());
    if (found.size() > 1)
        throw usage_failure("--link: " + name + " names " + QString::number(found.size()) +
                                " ports: " + found.join(", "),
                            "Give more of the name, or one of these. `tarnwickctl ports` shows "
                            "what is known of each.");
    return found.isEmpty() ? name : found[0];
}

QString rights_advice(const QString& port)
{
    const QString group = port_group(port);
    const QString owner = group.isEmpty() ? "Ports belong to a group, mostly dialout"
                                          : "It belongs to the group " + group;
    return owner + ": `sudo adduser $USER " + (group.isEmpty() ? "dialout" : group) +
           "`, then log in again.";
}

QString busy_advice(const QVector<PortHolder>& holders)
{
    QStringList programs;
    for (const PortHolder& holder : holders)
        programs.append(shown(holder));
    return programs.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + programs.join(", ") + ": end that, or take another port.";
}

Failure port_failure(const QString& port, ulong error, const QString& reason)
{
    const QString what = "the port " + port + " can't be opened: ";
    switch (port_bar(port, {})) {
    case PortBar::Missing:
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    case PortBar::NoPort:
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    case PortBar::Rights:
        return {ExitCode::Link, what + "permission denied", rights_advice(port)};
    case PortBar::Locked:
    case PortBar::None:
        break;
    }
    // The rights are there, so that somebody else has it.
    if (error == QSerialPort::PermissionError)
        return {ExitCode::Link, what + reason, busy_advice(port_holders(port))};
    if (error == QSerialPort::UnsupportedOperationError)
        return {ExitCode::Link, what + reason,
                "It may be no serial port, or need another rate or format in --link."};
    return {ExitCode::Link, what + reason,
            "Is the adapter all right, and does the port belong to a device? Plug the adapter in "
            "again, or take another port."};
}

Failure network_failure(const QString& peer)
{
    return {ExitCode::Link, "no connection to " + peer,
            "Check that the device or gateway is on, that address and port are right, and that no "
            "firewall is between; a slow network needs a longer --timeout."};
}
