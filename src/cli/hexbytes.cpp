#include "cli/hexbytes.h"

#include "checksum/hextext.h"

Parsed<QByteArray> parse_hex_bytes(const QString& text)
{
    QByteArray bytes;
    int high = -1; // the pair's first digit
    for (int i = 0; i < text.size(); ++i) {
        const bool separator = text[i].isSpace() || text[i] == ':';
        if (separator && high < 0)
            continue;
        const int digit = hex_digit(text[i].toLatin1());
        if (separator)
            return {{}, SpecError{"a byte has two hexadecimal digits", i - 1, 1}};
        if (digit < 0)
            return {{}, SpecError{"not a hexadecimal digit", i, 1}};
        if (high >= 0)
            bytes.append(char(high << 4 | digit));
        high = high < 0 ? digit : -1;
    }
    if (high >= 0)
        return {{}, SpecError{"a byte has two hexadecimal digits", int(text.size()) - 1, 1}};
    return {bytes, std::nullopt};
}

QString shown(const QByteArray& bytes)
{
    return bytes.isEmpty() ? QString('-') : hex_text(bytes.constData(), int(bytes.size()));
}
