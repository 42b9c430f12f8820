#include "tools/atcommand.h"

namespace {

template <int SIZE> const char* word(const char* const (&words)[SIZE], int index)
{
    return index >= 0 && index < SIZE ? words[index] : nullptr;
}

} // namespace

const char* at_bandwidth(int index)
{
    static constexpr const char* WORDS[] = {"7.8",  "10.4", "15.6", "20.8", "31.25",
                                            "41.7", "62.5", "125",  "250",  "500"};
    return word(WORDS, index);
}

const char* at_coding_rate(int index)
{
    static constexpr const char* WORDS[] = {"4/5", "4/6", "4/7", "4/8"};
    return word(WORDS, index);
}

const char* at_rx_format(int format)
{
    static constexpr const char* WORDS[] = {"raw", "hex"};
    return word(WORDS, format);
}

const char* at_class(int device_class)
{
    static constexpr const char* WORDS[] = {"a", "b", "c"};
    return word(WORDS, device_class);
}

QString at_hex(const void* data, int nbytes)
{
    const QByteArray bytes(static_cast<const char*>(data), nbytes);
    return QString::fromLatin1(bytes.toHex().toUpper());
}
