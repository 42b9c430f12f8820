// The values of a Dorv module's settings as somebody types them.
#pragma once

#include "stack/typedtext.h"
#include "tools/dorvsettings.h"

// Adds to the values what the text means for that field. Throws TextError.
void take_dorv_value(const DorvField& field, const Piece& text, DorvValues& values);
