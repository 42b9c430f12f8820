// MD5 against OpenSSL's.
#include "md5.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <openssl/evp.h>

namespace {

QByteArray openssl_md5(const QByteArray& message)
{
    QByteArray digest(16, '\0');
    EVP_Digest(message.constData(), std::size_t(message.size()),
               reinterpret_cast<unsigned char*>(digest.data()), nullptr, EVP_md5(), nullptr);
    return digest.toHex();
}

// The digest of a message handed over in pieces, as `next_piece` says how long.
template <typename Length> QByteArray md5_in_pieces(const QByteArray& message, Length next_piece)
{
    Md5Context context;
    md5_init(&context);
    for (int done = 0; done < message.size();) {
        const int piece = std::min(next_piece(), int(message.size()) - done);
        md5_update(&context, message.constData() + done, unsigned(piece));
        done += piece;
    }
    QByteArray digest(16, '\0');
    md5_final(digest.data(), &context);
    EXPECT_EQ(std::memcmp(context.digest, digest.constData(), 16), 0);
    return digest.toHex();
}

TEST(Md5, AgreesWithOpensslAtEachLengthHoweverItIsCut)
{
    QRandomGenerator random(5);
    for (int size = 0; size < 700; ++size) { // each place in a block many times, 55 and 56 too
        QByteArray message(size, Qt::Uninitialized);
        for (char& byte : message)
            byte = char(random.bounded(256));
        const QByteArray expected = openssl_md5(message);
        ASSERT_EQ(md5_in_pieces(message, [=] { return size; }), expected) << size;
        ASSERT_EQ(md5_in_pieces(message, [] { return 1; }), expected) << size;
        ASSERT_EQ(md5_in_pieces(message, [&] { return random.bounded(150); }), expected) << size;
    }
}

TEST(Md5, GivesThePublishedDigests)
{
    EXPECT_EQ(md5_in_pieces("", [] { return 1; }), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5_in_pieces("123456789", [] { return 9; }), "25f9e794323b453885f5181f1b624d0b");
}

TEST(Md5, CountsBitsAcrossTheWords)
{
    Md5Context context;
    md5_init(&context);
    EXPECT_THAT(context.count, testing::ElementsAre(0, 0));
    EXPECT_THAT(context.state,
                testing::ElementsAre(0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476));
    md5_update(&context, "abc", 3);
    EXPECT_THAT(context.count, testing::ElementsAre(24, 0));
    EXPECT_EQ(std::memcmp(context.block, "abc", 3), 0);
    context.count[0] = 0xFFFFFFF0; // two bytes before the low word is full
    md5_update(&context, "abc", 3);
    EXPECT_THAT(context.count, testing::ElementsAre(8, 1));
    EXPECT_EQ(context.block[0], 'c');
}

} // namespace
