#include "cli/cnetaddress.h"

#include "tools/cnetframe.h"

Parsed<CnetAddress> parse_cnet_address(const QString& text)
{
    const Parsed<QByteArray> bytes = parse_hex_bytes(text);
    if (bytes.error)
        return {{}, bytes.error};
    const int size = int(bytes.value.size());
    if (size != CNET_SHORT_ADDRESS && size != CNET_LONG_ADDRESS)
        return {{}, Piece{text}.error("an address has 4 or 16 hexadecimal digits, as in 1234")};
    return {{bytes.value}, std::nullopt};
}

Parsed<quint32> parse_number_mask(const QString& text, int least, int most)
{
    const QString range = QStringLiteral("%1 to %2").arg(least).arg(most);
    quint32 mask = 0;
    for (const Piece& piece : Piece{text}.split(',')) {
        const QVector<Piece> ends = piece.split('-');
        if (ends.size() > 2)
            return {0, ends[2].error("a range has two ends, as in 9-30")};
        for (const Piece& end : ends) {
            if (!number_in(end.text, least, most))
                return {
                    0, end.error("a number from " + range + " is needed, or a range such as 9-30")};
        }
        const int first = int(*number_in(ends.first().text, least, most));
        const int last = int(*number_in(ends.last().text, least, most));
        if (first > last)
            return {0, piece.error("the range runs backwards")};
        for (int number = first; number <= last; ++number)
            mask |= 1u << (number - least);
    }
    return {mask, std::nullopt};
}

Parsed<CnetWord> parse_cnet_word(const QString& text)
{
    const QVector<Piece> sides = Piece{text}.split('=');
    if (sides.size() != 2)
        return {{}, Piece{text}.error("a word is changed as in 3=00112233")};
    const auto index = number_in(sides[0].text, 0, CNET_BLOCK_WORDS - 1);
    if (!index)
        return {{}, sides[0].error("words are counted from 0 to 12")};
    const Parsed<QByteArray> bytes = parse_hex_bytes(sides[1].text);
    if (bytes.error)
        return {{}, SpecError{bytes.error->message, sides[1].column + bytes.error->column, 1}};
    if (bytes.value.size() != 4)
        return {{}, sides[1].error("a word has 8 hexadecimal digits")};
    return {{int(*index), bytes.value}, std::nullopt};
}
