// The link that somebody chose in the link dialog.
#pragma once

#include "stack/stack.h"

#include <QCoreApplication>

class QLinkCfgDlg;
struct tcpip_cfg;

struct LinkChoice
{
    Q_DECLARE_TR_FUNCTIONS(LinkChoice)
public:
    LinkDescription link;
    int timeout_ms = 0;
    QString problem; // one sentence; empty when the link can be used
};

LinkChoice network_choice(const tcpip_cfg& settings);
LinkChoice chosen_link(const QLinkCfgDlg& dialog);
// The other way: the dialog begins with this link. It knows no raw links, and fewer time-outs.
void show_link(QLinkCfgDlg& dialog, const LinkDescription& link, int timeout_ms);
