#include "monitor/typedbytes.h"

#include <algorithm>
#include <iterator>

namespace {
struct Escape
{
    char letter;
    char byte;
};

constexpr Escape ESCAPES[] = {{'r', '\r'},   {'n', '\n'}, {'t', '\t'},
                              {'e', '\x1b'}, {'0', '\0'}, {'\\', '\\'}};

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

// Takes one escape from `at`, past the backslash; how many characters it has, 0 when it is none.
int take_escape(const QString& text, int at, TypedBytes& typed)
{
    const QString letter = text.mid(at, 1);
    for (const Escape& escape : ESCAPES) {
        if (letter != QChar(escape.letter))
            continue;
        typed.bytes.append(escape.byte);
        return 1;
    }
    if (letter == "c" && at + 1 == text.size()) {
        typed.ended = false;
        return 1;
    }
    bool good = false;
    const QString digits = text.mid(at + 1, 2);
    const int byte = digits.toInt(&good, 16);
    if (letter != "x" || digits.size() != 2 || !digits[0].isLetterOrNumber() || !good)
        return 0;
    typed.bytes.append(char(byte));
    return 3;
}
} // namespace

TypedBytes typed_bytes(const QString& text)
{
    TypedBytes typed;
    for (int at = 0; at < text.size();) {
        const int backslash = int(text.indexOf('\\', at));
        const int end = backslash < 0 ? int(text.size()) : backslash;
        typed.bytes += text.mid(at, end - at).toUtf8();
        if (backslash < 0)
            break;
        const int taken = take_escape(text, backslash + 1, typed);
        if (taken == 0) {
            typed.fault = "an escape is one of \\r \\n \\t \\e \\0 \\\\ and \\xHH; \\c ends a text";
            typed.column = backslash;
            break;
        }
        at = backslash + 1 + taken;
    }
    return typed;
}

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
