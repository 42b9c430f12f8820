// tarnwickctl ports: the serial ports of this machine.
#include "cli/invocation.h"

#include "serialport/qextserialenumerator.h"

#include <QFileInfo>
#include <QJsonArray>
#include <algorithm>

namespace {
QString usb_id(const QextPortInfo& port)
{
    if (port.vendorID == 0 && port.productID == 0)
        return {};
    return QStringLiteral("%1:%2")
        .arg(port.vendorID, 4, 16, QChar('0'))
        .arg(port.productID, 4, 16, QChar('0'));
}

// The folder of virtual ports when it is there and none of its entries counts.
QString ignored_folder()
{
    const QString folder = QextSerialEnumerator::virtual_ports_folder();
    const bool ignored =
        QFileInfo::exists(folder) && !QextSerialEnumerator::virtual_ports_folder_make();
    return ignored ? folder : QString();
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
        QStringList about = {port.friendName, port.enumName, usb_id(port)};
        about.removeAll({});
        invocation.console.line(
            (port.portName.leftJustified(longest) + "  " + about.join(", ")).trimmed());
        list.append(QJsonObject{{"name", port.portName},
                                {"device", port.physName},
                                {"description", port.friendName},
                                {"manufacturer", port.enumName},
                                {"vendor_id", port.vendorID},
                                {"product_id", port.productID}});
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
         "description, maker, and vendor and product of USB adapters.",
         {},
         Needs::Nothing,
         run_ports}};
}
