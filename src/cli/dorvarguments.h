// The values of a Dorv module's settings as arguments of the command line.
#pragma once

#include "tools/dorvsettings.h"

// The values that the words mean. Throws Failure of usage.
DorvValues parse_dorv_values(const DorvSetting& setting, const QStringList& words);
