// Why a link can't be used, as a value: each program words it for its own users.
#pragma once

#include <QString>

//   kind            detail
//   NoSuchPort      -
//   SeveralPorts    the ports that the name fits
//   NotAPort        -
//   NoRights        -
//   Busy            the port's own text; holders: who has it open, as in "picocom (4711)"
//   BadSettings     the port's own text
//   PortFailed      the port's own text
//   NoConnection    -
//   NoThread        -
//   PortGone        -
//   ConnectionLost  -
//   BadAnswer       -
//   NoAnswer        -
enum class LinkTrouble {
    NoSuchPort,
    SeveralPorts, // fit the name
    NotAPort,
    NoRights,
    Busy,
    BadSettings, // the port doesn't take its rate or format
    PortFailed,
    NoConnection,
    NoThread,       // the system starts no thread for the link
    PortGone,       // since it was opened
    ConnectionLost, // since it was opened
    BadAnswer,      // what came is no answer to what was asked
    NoAnswer,       // nothing came in time
};

struct LinkProblem
{
    LinkTrouble kind;
    QString target; // the port, or host:port
    QString detail = {};
    QString holders = {};
};
