// How far a long job is, as one line of text.
#pragma once

#include "stack/progress.h"

// "[=====     ]  50 %  131072 of 262144 bytes  10.9 KB/s  0:12 left"
QString transfer_text(const Progress& progress);
// " 50 %  33 of 66 pairs  0:12 left", with room for more after it
QString count_text(const Progress& progress, const QString& unit);
