#include "workbench/linkchoice.h"

#include "linkcfg/qlinkcfgdlg.h"
#include "linkcfg/qserialcfgwidget.h"
#include "linkcfg/qtcpipcfgwidget.h"
#include "stack/portproblem.h"

namespace {
constexpr int SERIAL = 0; // of QLinkCfgDlg::link_type
constexpr int TCPIP = 1;

LinkChoice serial_choice(const QSerialCfgWidget& page)
{
    LinkChoice choice;
    choice.link.kind = LinkKind::Serial;
    choice.link.port = page.port_name();
    page.port_settings_get(&choice.link.settings);
    choice.timeout_ms = page.timeout();
    if (choice.link.port.isEmpty())
        choice.problem = page.port_exists()
                             ? LinkChoice::tr("No serial port is chosen: choose one.")
                             : LinkChoice::tr("There is no serial port: plug an adapter in.");
    return choice;
}

QString full_name_of(const QString& port)
{
    try {
        return full_port_name(port);
    } catch (const LinkProblem&) {
        return port; // it names several
    }
}
} // namespace

LinkChoice network_choice(const tcpip_cfg& settings)
{
    LinkChoice choice;
    choice.link.host = QString::fromLatin1(settings.addr).trimmed();
    choice.link.remote_port = settings.remote_port;
    choice.timeout_ms = settings.timeout;
    switch (settings.protocol) {
    case TCPIP_TCP_CLIENT:
        choice.link.kind = LinkKind::Tcp;
        break;
    case TCPIP_UDP:
        choice.link.kind = LinkKind::Udp;
        break;
    case TCPIP_UDP_BROADCAST:
        choice.link.kind = LinkKind::Broadcast;
        break;
    default:
        choice.problem =
            LinkChoice::tr("No link does that protocol: choose TCP Client, UDP or UDP Broadcast.");
    }
    if (choice.problem.isEmpty() && choice.link.kind != LinkKind::Broadcast &&
        choice.link.host.isEmpty())
        choice.problem = LinkChoice::tr("The address is missing: type one.");
    return choice;
}

LinkChoice chosen_link(const QLinkCfgDlg& dialog)
{
    if (dialog.link_type() == SERIAL)
        return serial_choice(*dialog.serial_widget());
    if (dialog.link_type() == TCPIP) {
        tcpip_cfg settings = {};
        dialog.tcpip_widget()->settings_get(&settings);
        return network_choice(settings);
    }
    LinkChoice choice;
    choice.problem = LinkChoice::tr("Only serial and TCP/IP links can be used: choose one.");
    return choice;
}

void show_link(QLinkCfgDlg& dialog, const LinkDescription& link, int timeout_ms)
{
    if (link.kind != LinkKind::Serial) {
        dialog.link_type_set(TCPIP);
        return dialog.tcpip_widget()->settings_show(network_settings(link, timeout_ms));
    }
    PortSettings settings = link.settings;
    settings.Timeout_Millisec = timeout_ms;
    dialog.link_type_set(SERIAL);
    dialog.serial_widget()->settings_show(full_name_of(link.port), settings);
}
