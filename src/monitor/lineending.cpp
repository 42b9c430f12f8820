#include "monitor/lineending.h"

#include <iterator>

namespace {
struct EndingRow
{
    LineEnding ending;
    const char* name;
    const char* bytes;
};

constexpr EndingRow ENDINGS[] = {{LineEnding::Cr, "cr", "\r"},
                                 {LineEnding::Lf, "lf", "\n"},
                                 {LineEnding::CrLf, "crlf", "\r\n"},
                                 {LineEnding::None, "none", ""}};
} // namespace

QByteArray bytes_of(LineEnding ending)
{
    return ENDINGS[int(ending)].bytes;
}

const char* name_of(LineEnding ending)
{
    return ENDINGS[int(ending)].name;
}

LineEnding next(LineEnding ending)
{
    return ENDINGS[(int(ending) + 1) % int(std::size(ENDINGS))].ending;
}

bool line_ending_named(const QString& name, LineEnding& ending)
{
    for (const EndingRow& row : ENDINGS)
        if (name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0) {
            ending = row.ending;
            return true;
        }
    return false;
}

QByteArray with_ending(const QByteArray& bytes, char mark, LineEnding ending)
{
    const QByteArray replacement = bytes_of(ending);
    if (replacement == QByteArray(1, mark))
        return bytes;
    QByteArray result;
    for (const char byte : bytes)
        if (byte == mark)
            result += replacement;
        else
            result += byte;
    return result;
}
