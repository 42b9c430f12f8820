#include "stack/typedtext.h"

#include "checksum/hextext.h"

#include <algorithm>

Piece Piece::mid(int position, int length) const
{
    return {text.mid(position, length), column + position};
}

QVector<Piece> Piece::split(QChar separator) const
{
    QVector<Piece> pieces;
    int start = 0;
    while (true) {
        const int end = text.indexOf(separator, start);
        if (end < 0)
            break;
        pieces.append(mid(start, end - start));
        start = end + 1;
    }
    pieces.append(mid(start));
    return pieces;
}

bool Piece::is(const char* word) const
{
    return text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

TextError Piece::error(const QString& message) const
{
    return {message, column, std::max(1, int(text.size()))};
}

TextError Piece::error_after(const QString& message) const
{
    return {message, column + int(text.size()), 1};
}

std::optional<std::int64_t> number_in(const QString& text, std::int64_t least, std::int64_t most)
{
    const bool hexadecimal = text.startsWith("0x", Qt::CaseInsensitive);
    bool ok = false;
    const std::int64_t number = text.toLongLong(&ok, hexadecimal ? 16 : 10);
    if (!ok || number < least || number > most)
        return std::nullopt;
    return number;
}

QByteArray parse_hex_bytes(const Piece& piece)
{
    const QString& text = piece.text;
    QByteArray bytes;
    int high = -1; // the pair's first digit
    for (int i = 0; i < text.size(); ++i) {
        const bool separator = text[i].isSpace() || text[i] == ':';
        if (separator && high < 0)
            continue;
        const int digit = hex_digit(text[i].toLatin1());
        if (separator)
            throw piece.mid(i - 1, 1).error(StackText::tr("a byte has two hexadecimal digits"));
        if (digit < 0)
            throw piece.mid(i, 1).error(StackText::tr("not a hexadecimal digit"));
        if (high >= 0)
            bytes.append(char(high << 4 | digit));
        high = high < 0 ? digit : -1;
    }
    if (high >= 0)
        throw piece.mid(int(text.size()) - 1)
            .error(StackText::tr("a byte has two hexadecimal digits"));
    return bytes;
}

QString shown(const QByteArray& bytes)
{
    return bytes.isEmpty() ? QString('-') : hex_text(bytes.constData(), int(bytes.size()));
}

QString shown_both(const QByteArray& bytes)
{
    constexpr int SHORTEST_TEXT = 3; // fewer bytes that look like text mostly are none
    const bool text = std::all_of(bytes.cbegin(), bytes.cend(), [](char byte) {
        return (byte >= ' ' && byte <= '~') || byte == '\r' || byte == '\n';
    });
    if (!text || bytes.size() < SHORTEST_TEXT)
        return shown(bytes);
    return shown(bytes) + "  \"" +
           QString::fromLatin1(bytes).replace('\r', "\\r").replace('\n', "\\n") + '"';
}

QString pointed_at(const QString& text, const TextError& error)
{
    const QString caret = '^' + QString(std::max(0, error.length - 1), '~');
    return "  " + text + "\n  " + QString(error.column, ' ') + caret;
}
