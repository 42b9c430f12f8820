// The options that say how a device is connected, and the stack that they describe.
#pragma once

#include "cli/command.h"
#include "cli/stack.h"

// --frame is among them for commands that speak through framers.
QList<QCommandLineOption> stack_options(Needs needs);

// The parts of a stack, alive. Throws Failure when the texts are wrong; opens nothing.
struct Connection
{
    explicit Connection(const Invocation& invocation);

    ExchangeLog log;
    Stack stack;
};
