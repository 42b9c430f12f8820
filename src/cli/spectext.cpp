#include "cli/spectext.h"

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

SpecError Piece::error(const QString& message) const
{
    return {message, column, std::max(1, int(text.size()))};
}

SpecError Piece::error_behind(const QString& message) const
{
    return {message, column + int(text.size()), 1};
}

std::optional<qint64> number_in(const QString& text, qint64 least, qint64 most)
{
    const bool hexadecimal = text.startsWith("0x", Qt::CaseInsensitive);
    bool ok = false;
    const qint64 number = text.toLongLong(&ok, hexadecimal ? 16 : 10);
    if (!ok || number < least || number > most)
        return std::nullopt;
    return number;
}

QString pointed_at(const QString& text, const SpecError& error)
{
    const QString caret = '^' + QString(std::max(0, error.length - 1), '~');
    return "  " + text + "\n  " + QString(error.column, ' ') + caret;
}
