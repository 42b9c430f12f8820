// tarnwickctl ports: the serial ports of this machine.
#include "cli/invocation.h"
#include "cli/linkfailure.h"
#include "serialport/portdetails.h"

#include <QFileInfo>
#include <QJsonArray>
#include <algorithm>

namespace {
// The folder of virtual ports when it is there and none of its entries counts.
QString ignored_folder()
{
    const QString folder = QextSerialEnumerator::virtual_ports_folder();
    const bool ignored =
        QFileInfo::exists(folder) && !QextSerialEnumerator::virtual_ports_folder_make();
    return ignored ? folder : QString();
}

struct ListedPort
{
    explicit ListedPort(const QextPortInfo& port)
        : port(port)
        , identity(port_identity(port))
        , holders(port_holders(port.portName))
        , bar(port_bar(port.portName, holders))
    {
    }

    QextPortInfo port;
    PortIdentity identity;
    QVector<PortHolder> holders;
    PortBar bar;
};

QString shown(const QVector<PortHolder>& holders)
{
    QStringList programs;
    for (const PortHolder& holder : holders)
        programs.append(shown(holder));
    return programs.join(", ");
}

// Why the port can't be opened and what to do; empty when nothing is in the way.
QString obstacle(const ListedPort& listed)
{
    switch (listed.bar) {
    case PortBar::Rights:
        return "you have no right to it. " + rights_advice(listed.port.portName);
    case PortBar::Locked:
        return "another program has locked it. " + busy_advice(shown(listed.holders));
    case PortBar::Missing:
        return "the device is no longer there";
    case PortBar::NoPort:
        return "it is no serial port";
    case PortBar::None:
        break;
    }
    return {};
}

// A line with the port's name, and one for each other thing worth knowing, set in.
void show(const ListedPort& listed, int name_width, Console& console)
{
    const QextPortInfo& port = listed.port;
    QStringList about = {port.friendName, port.enumName, listed.identity.usb_id,
                         listed.identity.driver};
    about.removeAll({});
    console.line((port.portName.leftJustified(name_width) + "  " + about.join(", ")).trimmed());
    for (const QString& name : listed.identity.stable_names)
        console.line("  always  " + name);
    QStringList programs;
    for (const PortHolder& holder : listed.holders)
        programs.append(shown(holder));
    if (!programs.isEmpty())
        console.line("  in use  " + programs.join(", "));
    const QString why = obstacle(listed);
    if (!why.isEmpty())
        console.line("  closed  " + why);
}

QJsonObject json_of(const ListedPort& listed)
{
    QJsonArray holders;
    for (const PortHolder& holder : listed.holders)
        holders.append(QJsonObject{
            {"pid", holder.pid}, {"program", holder.program}, {"locked", holder.locked}});
    const QextPortInfo& port = listed.port;
    return {{"name", port.portName},
            {"device", port.physName},
            {"description", port.friendName},
            {"manufacturer", port.enumName},
            {"vendor_id", port.vendorID},
            {"product_id", port.productID},
            {"usb_id", listed.identity.usb_id},
            {"serial_number", listed.identity.serial_number},
            {"driver", listed.identity.driver},
            {"stable_names", QJsonArray::fromStringList(listed.identity.stable_names)},
            {"holders", holders},
            {"can_open", listed.bar == PortBar::None},
            {"obstacle", obstacle(listed)}};
}

void run_ports(Invocation& invocation)
{
    invocation.expect_at_most(0);
    const QList<QextPortInfo> ports = QextSerialEnumerator::getPorts();
    int longest = 0;
    for (const QextPortInfo& port : ports)
        longest = std::max(longest, int(port.portName.size()));
    QJsonArray list;
    for (const QextPortInfo& port : ports) {
        const ListedPort listed(port);
        show(listed, longest, invocation.console);
        list.append(json_of(listed));
    }
    const QString ignored = ignored_folder();
    if (!ignored.isEmpty())
        invocation.console.note("The ports in " + ignored +
                                " are ignored, as somebody else may write there. If the folder is "
                                "yours, `chmod go-w` on it helps.");
    if (ports.isEmpty())
        invocation.console.note("No serial ports. Plug an adapter in, or link any tty into " +
                                QextSerialEnumerator::virtual_ports_folder());
    QJsonObject result = {{"ports", list}};
    if (!ignored.isEmpty())
        result["ignored_folder"] = ignored;
    invocation.console.result(result);
}
} // namespace

QList<Command> ports_commands()
{
    return {
        {"ports",
         "",
         "List the serial ports of this machine.",
         "Lists the serial ports of this machine, those of simulated devices among them: name,\n"
         "description, maker, vendor and product of USB adapters, driver; and set in below it the\n"
         "names that stay when ports change theirs (always), the programs that have it open\n"
         "(in use), and why it can't be opened (closed). Nothing is opened for it.\n"
         "\n"
         "--link serial:NAME takes a port's name, the last part of it, or any part of what is\n"
         "listed here that only one port has, as in serial:ftdi or serial:0403:6001.",
         {},
         Needs::Nothing,
         run_ports}};
}
