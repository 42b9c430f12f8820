#include "workbench/linkwords.h"

QString LinkWords::sentence(const LinkProblem& problem)
{
    const QString& target = problem.target;
    switch (problem.kind) {
    case LinkTrouble::NoSuchPort:
        return tr("There is no port %1: plug the adapter in, or choose another port.").arg(target);
    case LinkTrouble::SeveralPorts:
        return tr("%1 fits several ports (%2): give more of the name.").arg(target, problem.detail);
    case LinkTrouble::NotAPort:
        return tr("%1 is no serial port: choose another one.").arg(target);
    case LinkTrouble::NoRights:
        return tr("You have no rights to the port %1: have yourself added to its group, mostly "
                  "dialout, and log in again.")
            .arg(target);
    case LinkTrouble::Busy:
        return problem.holders.isEmpty()
                   ? tr("The port %1 is in use: end the other program, or choose another port.")
                         .arg(target)
                   : tr("The port %1 is in use by %2: end that, or choose another port.")
                         .arg(target, problem.holders);
    case LinkTrouble::BadSettings:
        return tr("The port %1 doesn't take this rate or format: choose another one.").arg(target);
    case LinkTrouble::PortFailed:
        return tr("The port %1 can't be opened (%2): plug the adapter in again.")
            .arg(target, problem.detail);
    case LinkTrouble::NoConnection:
        return tr("There is no connection to %1: check address, port and firewall, and that the "
                  "device is on.")
            .arg(target);
    case LinkTrouble::NoThread:
        return tr("The system starts no thread for the link: end other programs.");
    case LinkTrouble::PortGone:
        return tr("The port %1 has gone: plug the adapter in again and connect anew.").arg(target);
    case LinkTrouble::ConnectionLost:
        return tr("The connection to %1 is lost: check the cable or the network and connect anew.")
            .arg(target);
    case LinkTrouble::BadAnswer:
        return tr("What came from %1 is no answer: check rate, format and frame.").arg(target);
    case LinkTrouble::NoAnswer:
        return tr("Nothing came from %1 in time: is the device on?").arg(target);
    }
    return {};
}
