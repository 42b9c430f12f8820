// CRCs, sums, MD5 and hexadecimal text against published answers, zlib and OpenSSL.
#include "checksum/crc.h"
#include "checksum/hextext.h"
#include "checksum/md5.h"
#include "checksum/sums.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <gmock/gmock.h>
#include <openssl/evp.h>
#include <zlib.h>

namespace {

TEST(Checksum, GivesThePublishedAnswers)
{
    // crc8, crc16, crc32, sum8, xor8, sum16
    const std::pair<QByteArray, std::vector<unsigned>> rows[] = {
        {"", {0x00, 0xFFFF, 0xFFFFFFFF, 0x00, 0x00, 0x0000}},
        {"123456789", {0xA1, 0x4B37, 0x340BC6D9, 0xDD, 0x31, 0x01DD}},
        // Bytes from 0x80 on count as negative in the wide sum, and only there.
        {QByteArray(128, '\x80'), {0x7B, 0x0541, 0x5F7BF8A8, 0x00, 0x00, 0xC000}},
    };
    for (const auto& [bytes, answers] : rows) {
        const char* data = bytes.constData();
        const unsigned len = unsigned(bytes.size());
        EXPECT_THAT(answers, testing::ElementsAre(crc8(data, len), crc16(data, int(len)),
                                                  crc32(data, len, CRC32_START), sum8(data, len),
                                                  xor8(data, len), sum16(data, len)));
    }
}

TEST(Checksum, AgreesWithZlibAndOpensslHoweverTheBytesAreCut)
{
    QRandomGenerator random(5);
    for (int size = 0; size < 700; ++size) { // each place in a block many times, 55 and 56 too
        QByteArray bytes(size, Qt::Uninitialized);
        for (char& byte : bytes)
            byte = char(random.bounded(256));
        Md5Context context;
        md5_init(&context);
        std::uint32_t crc = CRC32_START;
        for (int done = 0, piece = 0; done < size; done += piece) {
            piece = qMin(random.bounded(150), size - done);
            md5_update(&context, bytes.constData() + done, unsigned(piece));
            crc = crc32(bytes.constData() + done, unsigned(piece), crc);
        }
        unsigned char digest[16], expected[16];
        md5_final(digest, &context);
        EVP_Digest(bytes.constData(), std::size_t(size), expected, nullptr, EVP_md5(), nullptr);
        ASSERT_THAT(digest, testing::ElementsAreArray(expected)) << size;
        ASSERT_THAT(context.digest, testing::ElementsAreArray(expected)) << size;
        const auto* data = reinterpret_cast<const Bytef*>(bytes.constData());
        ASSERT_EQ(crc, ~std::uint32_t(crc32_z(0, data, std::size_t(size)))) << size;
    }
}

TEST(Checksum, Md5CountsBitsAcrossItsWords)
{
    Md5Context context;
    md5_init(&context);
    context.count[0] = 0xFFFFFFF0; // two bytes before the low word is full
    md5_update(&context, "abc", 3);
    EXPECT_THAT(context.count, testing::ElementsAre(8, 1));
    EXPECT_EQ(context.block[0], 'c');
}

TEST(HexText, HasPairsSplitByOneBlankAndIsReadAsPairsOrNotAtAll)
{
    EXPECT_TRUE(hex_text(nullptr, 3).isNull());
    EXPECT_FALSE(hex_text("abc", 0).isNull());
    EXPECT_EQ(hex_text("abc", -1), "");
    EXPECT_EQ(hex_text("\x01\xAB\xFF\n", 4), "01 AB FF 0A");

    // Text, its length, the room, the result, and what eight bytes of 0xEE hold afterwards.
    const std::tuple<QByteArray, int, int, int, const char*> rows[] = {
        {"00112233aAbBfF7f", 16, 8, 8, "00112233aabbff7f"},
        {"00112233aAbBfF7f", 16, 7, 0, "eeeeeeeeeeeeeeee"},
        {"0011", 3, 1, 1, "00eeeeeeeeeeeeee"},
        {"0011", -4, 8, 0, "eeeeeeeeeeeeeeee"},
        // What strtoul makes of a pair: no digit, a digit before and after, a sign, a prefix, NUL.
        {QByteArray("zz5g 7-1+40x1\0", 14), 14, 8, 7, "000507ff040001ee"},
    };
    for (const auto& [text, textlen, outsize, result, bytes] : rows) {
        QByteArray out(8, '\xEE');
        EXPECT_EQ(hex_to_bytes(text, textlen, out.data(), outsize), result);
        EXPECT_EQ(out.toHex(), bytes);
        EXPECT_EQ(hex_to_bytes(nullptr, 4, out.data(), 2), 0);
    }
    EXPECT_EQ(hex_to_bytes("0011", 4, nullptr, 2), 0);
}

} // namespace
