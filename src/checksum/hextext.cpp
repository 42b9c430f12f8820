#include "checksum/hextext.h"

#include <QByteArray>
#include <cstdlib>

QString hex_text(const void* data, int nbytes)
{
    if (data == nullptr)
        return QString();
    if (nbytes <= 0)
        return QString("");

    const auto bytes = QByteArray::fromRawData(static_cast<const char*>(data), nbytes);
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

int hex_digit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

int hex_to_bytes(const char* text, int textlen, void* out, int outsize)
{
    const int nbytes = textlen / 2;
    if (text == nullptr || out == nullptr || nbytes <= 0 || nbytes > outsize)
        return 0;

    auto* bytes = static_cast<unsigned char*>(out);
    for (int n = 0; n < nbytes; ++n, text += 2) {
        const char pair[] = {text[0], text[1], '\0'};
        bytes[n] = static_cast<unsigned char>(std::strtoul(pair, nullptr, 16));
    }
    return nbytes;
}
