#include "terminal/sendtext.h"

#include "checksum/hextext.h"

static SendText success(QByteArray bytes)
{
    return {std::move(bytes), SendText::NONE, 0, QChar(0)};
}

static SendText failure(QByteArray bytes, SendText::Error error, int offset, char character)
{
    return {std::move(bytes), error, offset, QChar::fromLatin1(character)};
}

// The byte that a backslash and `letter` mean, or -1.
static int escaped_byte(char letter)
{
    switch (letter) {
    case 'r':
        return 0x0D;
    case 'n':
        return 0x0A;
    case 't':
        return 0x09;
    case 'a':
        return 0x07;
    case 'b':
        return 0x08;
    case 'f':
        return 0x0C;
    case 'v':
        return 0x0B;
    case '0':
        return 0x00;
    case '\\':
    case '\'':
    case '"':
        return letter;
    default:
        return -1;
    }
}

SendText send_text_escaped(const QByteArray& text)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    int count = 0;
    for (int i = 0; i < text.size(); ++i) {
        char byte = text[i];
        if (byte == '\\') {
            if (++i == text.size())
                return failure(bytes.left(count), SendText::ESCAPE_AT_END, i, '\\');
            const int escaped = escaped_byte(text[i]);
            if (escaped < 0)
                return failure(bytes.left(count), SendText::BAD_ESCAPE, i, text[i]);
            byte = char(escaped);
        }
        bytes[count++] = byte;
    }
    bytes.truncate(count);
    return success(bytes);
}

static bool is_white_space(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

SendText send_text_hex(const QByteArray& text)
{
    constexpr int NO_DIGIT = -1;
    QByteArray bytes(text.size(), Qt::Uninitialized);
    int count = 0;
    int pending = NO_DIGIT;
    for (int i = 0; i < text.size(); ++i) {
        const int digit = hex_digit(text[i]);
        if (digit < 0 && !is_white_space(text[i]))
            return failure(bytes.left(count), SendText::NOT_HEX, i, text[i]);
        if (pending == NO_DIGIT) {
            pending = digit;
            continue;
        }
        bytes[count++] = char(digit < 0 ? pending : pending << 4 | digit);
        pending = NO_DIGIT;
    }
    bytes.truncate(count);
    return success(bytes);
}
