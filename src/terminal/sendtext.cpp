#include "terminal/sendtext.h"

#include "checksum/hextext.h"

#include <QCoreApplication>

namespace {

SendText success(QByteArray bytes)
{
    return {std::move(bytes), SendText::NONE, 0, QChar(0)};
}

SendText failure(QByteArray bytes, SendText::Error error, int offset, char character)
{
    return {std::move(bytes), error, offset, QChar::fromLatin1(character)};
}

// The byte that a backslash and `letter` mean, or -1.
int escaped_byte(char letter)
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

bool is_white_space(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

QString SendText::error_text() const
{
    const auto text = [](const char* source) {
        return QCoreApplication::translate("MainWindow", source);
    };
    switch (error) {
    case NONE:
        break;
    case BAD_ESCAPE:
        return text(QT_TRANSLATE_NOOP("MainWindow", "format error at %1: %2"))
            .arg(QString::number(offset), character);
    case ESCAPE_AT_END:
        return text(QT_TRANSLATE_NOOP("MainWindow", "format error at %1: \\")).arg(offset);
    case NOT_HEX:
        return text(QT_TRANSLATE_NOOP("MainWindow", "char '%1' at offset %2 is not a hex number"))
            .arg(character, QString::number(offset));
    }
    return {};
}

SendText send_text(const QString& typed, SendMode mode)
{
    const QByteArray text = typed.toLocal8Bit();
    switch (mode) {
    case SendMode::Hex:
        return send_text_hex(text);
    case SendMode::Escaped:
        return send_text_escaped(text);
    case SendMode::Raw:
        break;
    }
    return success(text);
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
