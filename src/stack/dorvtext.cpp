#include "stack/dorvtext.h"

namespace {
QString expectation(const DorvField& field)
{
    if (!field.words.isEmpty())
        return StackText::tr("one of %1 is needed").arg(QString(field.name).replace('|', ", "));
    if (field.bytes)
        return StackText::tr("%1 bytes in hexadecimal").arg(field.bytes);
    return StackText::tr("%1 is a number from %2 to %3")
        .arg(field.name)
        .arg(field.least)
        .arg(field.most);
}
} // namespace

void take_dorv_value(const DorvField& field, const Piece& text, DorvValues& values)
{
    if (field.bytes) {
        values.bytes = parse_hex_bytes(text);
        if (values.bytes.size() != field.bytes)
            throw text.error(expectation(field));
        return;
    }
    const std::optional<std::int64_t> number =
        field.words.isEmpty() ? number_in(text.text, field.least, field.most)
                              : std::optional<std::int64_t>(field.words.indexOf(text.text));
    if (!number || text.text.isEmpty() || (!field.words.isEmpty() && *number < 0))
        throw text.error(expectation(field));
    values.numbers.append(*number);
}
