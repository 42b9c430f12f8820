#include "stack/numbermask.h"

std::uint32_t parse_number_mask(const Piece& text, int least, int most)
{
    const auto number = [&](const Piece& piece) {
        const auto value = number_in(piece.text, least, most);
        if (!value)
            throw piece.error(
                StackText::tr("a number from %1 to %2 is needed, or a range such as 9-30")
                    .arg(least)
                    .arg(most));
        return int(*value);
    };
    std::uint32_t mask = 0;
    for (const Piece& piece : text.split(',')) {
        const QVector<Piece> ends = piece.split('-');
        if (ends.size() > 2)
            throw ends[2].error(StackText::tr("a range has two ends, as in 9-30"));
        const int first = number(ends.first());
        const int last = number(ends.last());
        if (first > last)
            throw piece.error(StackText::tr("the range runs backwards"));
        for (int i = first; i <= last; ++i)
            mask |= 1u << (i - least);
    }
    return mask;
}
