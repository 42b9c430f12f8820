// What to do about a port that can't be opened.
#pragma once

#include "serialport/portdetails.h"

QString rights_advice(const QString& port);
QString busy_advice(const QVector<PortHolder>& holders);
