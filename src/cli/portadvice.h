// Which port a text names, and what to do about a port or peer that can't be opened.
#pragma once

#include "cli/failure.h"
#include "serialport/portdetails.h"

// The name of the port that a text names. Throws Failure when it fits several. One that is a path
// is taken as it is: should the port be missing, no other may take its place.
QString full_port_name(const QString& name);

QString rights_advice(const QString& port);
QString busy_advice(const QVector<PortHolder>& holders);

// `error` and `reason` are the port's lastError() and errorString().
Failure port_failure(const QString& port, ulong error, const QString& reason);
Failure network_failure(const QString& peer);
