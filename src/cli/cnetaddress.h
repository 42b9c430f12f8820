// Addresses and settings of cnet devices as typed texts. What doesn't fit throws TextError.
#pragma once

#include "stack/typedtext.h"

struct CnetAddress
{
    QByteArray bytes; // as they travel: 2 bytes, or 8 for devices with long addresses

    bool is_long() const { return bytes.size() > 2; }
};

// 4 or 16 hexadecimal digits.
CnetAddress parse_cnet_address(const Piece& text);

// One word of a configuration block to change: "3=00112233".
struct CnetWord
{
    int index = 0;
    QByteArray bytes; // 4
};
CnetWord parse_cnet_word(const Piece& text);
