// Which serial port a text names, and why a port can't be opened.
#pragma once

#include "stack/linkproblem.h"

#include <QString>

// The name of the port that a text names. Throws LinkProblem when it fits several. One that is a
// path is taken as it is: should the port be missing, no other may take its place.
QString full_port_name(const QString& name);

// `error` and `reason` are the port's lastError() and errorString().
LinkProblem port_problem(const QString& port, unsigned long error, const QString& reason);
