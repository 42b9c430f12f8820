#include "cli/linkfailure.h"

namespace {
const char LIST_ADVICE[] = "`tarnwickctl ports` lists the ports of this machine.";

QString busy_advice(const QString& holders)
{
    return holders.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + holders + ": end that, or take another port.";
}
} // namespace

Failure open_failure(const LinkProblem& problem)
{
    const QString what = "the port " + problem.target + " can't be opened: ";
    switch (problem.kind) {
    case LinkTrouble::NoSuchPort:
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    case LinkTrouble::NotAPort:
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    case LinkTrouble::NoRights:
        return {
            ExitCode::Link, what + "permission denied",
            "Ports belong to a group, mostly dialout: `sudo adduser $USER dialout`, then log in "
            "again."};
    case LinkTrouble::Busy:
        return {ExitCode::Link, what + problem.detail, busy_advice(problem.holders)};
    case LinkTrouble::BadSettings:
        return {ExitCode::Link, what + problem.detail,
                "It may be no serial port, or need another rate or format in --link."};
    case LinkTrouble::NoConnection:
        return {ExitCode::Link, "no connection to " + problem.target,
                "Check that the device or gateway is on, that address and port are right, and that "
                "no firewall is between; a slow network needs a longer --timeout."};
    case LinkTrouble::NoThread:
        return {ExitCode::Link, "the system starts no thread for the link",
                "End other programs, or raise the limits that `ulimit -a` shows."};
    default:
        return {ExitCode::Link, what + problem.detail,
                "Is the adapter all right, and does the port belong to a device? Plug the adapter "
                "in again, or take another port."};
    }
}

Failure no_answer(const Stack& stack, const QString& what, const QString& advice)
{
    const LinkProblem problem = stack.trouble();
    switch (problem.kind) {
    case LinkTrouble::PortGone:
        return {ExitCode::Link, what + ": the port " + problem.target + " has gone",
                "Plug the adapter in again, and start anew."};
    case LinkTrouble::ConnectionLost:
        return {ExitCode::Link, what + ": the connection is lost",
                "Check the cable or the network, and start anew."};
    case LinkTrouble::BadAnswer:
        return {ExitCode::BadAnswer, what + ": what came is no answer to it",
                "The rate, the format or --frame may be wrong, or the line is noisy; -v shows the "
                "bytes."};
    default:
        return {ExitCode::NoAnswer, what + ": nothing came in time", advice};
    }
}
