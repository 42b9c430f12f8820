#include "cli/cnetaddress.h"

#include "tools/cnetframe.h"

CnetAddress parse_cnet_address(const Piece& text)
{
    const QByteArray bytes = parse_hex_bytes(text);
    if (bytes.size() != CNET_SHORT_ADDRESS && bytes.size() != CNET_LONG_ADDRESS)
        throw text.error("an address has 4 or 16 hexadecimal digits, as in 1234");
    return {bytes};
}

CnetWord parse_cnet_word(const Piece& text)
{
    const QVector<Piece> sides = text.split('=');
    if (sides.size() != 2)
        throw text.error("a word is changed as in 3=00112233");
    const auto index = number_in(sides[0].text, 0, CNET_BLOCK_WORDS - 1);
    if (!index)
        throw sides[0].error("words are counted from 0 to 12");
    const QByteArray bytes = parse_hex_bytes(sides[1]);
    if (bytes.size() != 4)
        throw sides[1].error("a word has 8 hexadecimal digits");
    return {int(*index), bytes};
}
