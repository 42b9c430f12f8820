// Bytes to hexadecimal text and back.
#include "hextext.h"

#include <QByteArray>
#include <gmock/gmock.h>

namespace {

TEST(HexText, WritesPairsSplitByOneBlank)
{
    EXPECT_TRUE(hex_text(nullptr, 3).isNull());
    EXPECT_TRUE(hex_text(nullptr, 0).isNull());
    for (const int nbytes : {0, -1}) {
        EXPECT_TRUE(hex_text("abc", nbytes).isEmpty()) << nbytes;
        EXPECT_FALSE(hex_text("abc", nbytes).isNull()) << nbytes;
    }
    EXPECT_EQ(hex_text("\n", 1), "0A");
    EXPECT_EQ(hex_text("\x01\xAB\xFF", 3), "01 AB FF");
    QByteArray all(256, Qt::Uninitialized);
    for (int n = 0; n < 256; ++n)
        all[n] = char(n);
    EXPECT_EQ(hex_text(all.constData(), 256), QString::fromLatin1(all.toHex(' ').toUpper()));
}

struct Reading
{
    QByteArray text;
    int textlen, outsize, result;
    const char* bytes; // what `out`, eight bytes of 0xEE before, holds afterwards
};

TEST(HexToBytes, ConvertsAllPairsOrNone)
{
    const Reading rows[] = {
        {"00112233aAbBfF7f", 16, 8, 8, "00112233aabbff7f"},
        {"00112233aAbBfF7f", 16, 7, 0, "eeeeeeeeeeeeeeee"},
        {"0011", 2, 8, 1, "00eeeeeeeeeeeeee"},
        {"0011", 3, 1, 1, "00eeeeeeeeeeeeee"},
        {"0011", 1, 8, 0, "eeeeeeeeeeeeeeee"},
        {"", 0, 0, 0, "eeeeeeeeeeeeeeee"},
        {"0011", -4, 8, 0, "eeeeeeeeeeeeeeee"},
        // What strtoul makes of a pair: no digit, a digit before and behind, a sign, a prefix, NUL.
        {QByteArray("zz5g 7-1+40x1\0", 14), 14, 8, 7, "000507ff040001ee"},
    };
    for (const Reading& row : rows) {
        SCOPED_TRACE(row.text.toStdString() + " " + std::to_string(row.textlen));
        QByteArray out(8, '\xEE');
        EXPECT_EQ(hex_to_bytes(row.text.constData(), row.textlen, out.data(), row.outsize),
                  row.result);
        EXPECT_EQ(out.toHex(), row.bytes);
    }
    char out[8];
    EXPECT_EQ(hex_to_bytes(nullptr, 4, out, 8), 0);
    EXPECT_EQ(hex_to_bytes("0011", 4, nullptr, 8), 0);
}

} // namespace
