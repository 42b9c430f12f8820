#include "stack/typedbytes.h"

#include "checksum/hextext.h"
#include "stack/typedtext.h"

namespace {
struct Escape
{
    char letter;
    char byte;
};

constexpr Escape ESCAPES[] = {{'r', '\r'},   {'n', '\n'}, {'t', '\t'},
                              {'e', '\x1b'}, {'0', '\0'}, {'\\', '\\'}};

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
    const QByteArray digits = text.mid(at + 1, 2).toLatin1();
    if (letter != "x" || digits.size() != 2 || hex_digit(digits[0]) < 0 || hex_digit(digits[1]) < 0)
        return 0;
    typed.bytes.append(QByteArray::fromHex(digits));
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
            typed.fault = StackText::tr(
                "an escape is one of \\r \\n \\t \\e \\0 \\\\ and \\xHH; \\c ends a text");
            typed.column = backslash;
            break;
        }
        at = backslash + 1 + taken;
    }
    return typed;
}
