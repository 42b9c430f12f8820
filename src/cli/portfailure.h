// Why a serial port could not be opened, for people.
#pragma once

#include "cli/failure.h"

// `error` and `reason` are the port's lastError() and errorString().
Failure port_failure(const QString& port, ulong error, const QString& reason);
