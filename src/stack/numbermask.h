// Numbers given as a list, as bits.
#pragma once

#include "stack/typedtext.h"

// "9-30", "9,12,20-22": the numbers from `least` to `most` as bits, `least` as bit 0. What doesn't
// fit throws TextError.
std::uint32_t parse_number_mask(const Piece& text, int least, int most);
