// The command line of the simulator, as values.
#pragma once

#include "devices/answering.h"
#include "devices/boot.h"
#include "devices/cnet.h"
#include "devices/dorv.h"
#include "devices/exchange.h"
#include "devices/faults.h"
#include "devices/replay.h"
#include "devices/talk.h"

#include <QString>
#include <QStringList>

struct Options
{
    QString device;
    QString name;         // of the port's link
    int listen_port = -1; // TCP port instead of a pseudo-terminal; negative for none
    int baud = 0;
    FaultSettings faults;
    TalkSettings talk;
    ExchangeSettings exchange;
    bool verbose = false;
    BootSettings boot;
    CnetDevice cnet_local;
    QVector<CnetDevice> cnet_neighbours;
    DorvSettings dorv;
    QString capture;      // the file
    QString capture_port; // the name of one of its ports; empty for the only one
    ReplaySettings replay;
    AnswerSettings answer;
};

struct ParsedOptions
{
    Options options;
    QString message; // what to print instead of running; empty when all is well
    bool ok = true;  // false: the message reports a mistake
};

// `arguments` without the program's name.
ParsedOptions parse_options(const QStringList& arguments);
