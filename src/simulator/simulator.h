// The simulator as a function of its command line.
#pragma once

#include <QStringList>

// Exit codes.
enum SimulatorExit : int {
    SIM_ENDED = 0,      // by Ctrl-C or a request to end
    SIM_NO_PORT = 1,    // the port could not be made
    SIM_BAD_OPTIONS = 2 // the command line is wrong; nothing was done
};

// `arguments` without the program's name. Prints the port's path as the first line, then runs the
// device until SIGINT, SIGTERM or SIGHUP.
int run_simulator(const QStringList& arguments);
