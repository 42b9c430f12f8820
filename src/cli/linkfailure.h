// What went wrong with a link, in the words of the command line.
#pragma once

#include "cli/failure.h"
#include "stack/stack.h"

// What to do about a port that this user may not open, or that programs hold: `holders`, as in
// "picocom (4711)", or none that are known.
QString rights_advice(const QString& port);
QString busy_advice(const QString& holders);

// Of a link that can't be opened.
Failure open_failure(const LinkProblem& problem);
// Why there is no answer: the port has gone, the connection is lost, or the device is silent, for
// which `advice` says what to do.
Failure no_answer(const LinkProblem& problem, const QString& what, const QString& advice);
Failure no_answer(const Stack& stack, const QString& what, const QString& advice);
