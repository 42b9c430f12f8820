#include "cli/linkfailure.h"

#include "serialport/portdetails.h"

namespace {
const char LIST_ADVICE[] = "`tarnwickctl ports` lists the ports of this machine.";

// Of a name that fits several ports.
Failure names_failure(const LinkProblem& problem)
{
    const auto count = problem.detail.count(',') + 1;
    return usage_failure("--link: " + problem.target + " names " + QString::number(count) +
                             " ports: " + problem.detail,
                         "Give more of the name, or one of these. `tarnwickctl ports` shows "
                         "what is known of each.");
}
} // namespace

QString rights_advice(const QString& port)
{
    const QString group = port_group(port);
    const QString owner = group.isEmpty() ? "Ports belong to a group, mostly dialout"
                                          : "It belongs to the group " + group;
    return owner + ": `sudo adduser $USER " + (group.isEmpty() ? "dialout" : group) +
           "`, then log in again.";
}

QString busy_advice(const QString& holders)
{
    return holders.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + holders + ": end that, or take another port.";
}

Failure open_failure(const LinkProblem& problem)
{
    const QString what = "the port " + problem.target + " can't be opened: ";
    switch (problem.kind) {
    case LinkTrouble::NoSuchPort:
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    case LinkTrouble::SeveralPorts:
        return names_failure(problem);
    case LinkTrouble::NotAPort:
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    case LinkTrouble::NoRights:
        return {ExitCode::Link, what + "permission denied", rights_advice(problem.target)};
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
    return no_answer(stack.trouble(), what, advice);
}

Failure no_answer(const LinkProblem& problem, const QString& what, const QString& advice)
{
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
