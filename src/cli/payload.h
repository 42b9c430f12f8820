// The bytes that a command is to work on: a file, standard input, or the command line.
#pragma once

#include "cli/command.h"

QList<QCommandLineOption> payload_options();

// --hex or --text; else the file that the argument names; else standard input. Throws Failure.
QByteArray payload_of(const Invocation& invocation, int argument);
