// Numbers as the modules' records have them: high byte first.
#pragma once

#include <QByteArray>

template <typename Unsigned> QByteArray big_endian(Unsigned number)
{
    QByteArray bytes;
    for (int shift = 8 * int(sizeof number); shift > 0; shift -= 8)
        bytes += char(number >> (shift - 8) & 0xFF);
    return bytes;
}
