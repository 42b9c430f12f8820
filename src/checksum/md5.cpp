#include "checksum/md5.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned BLOCK_SIZE = sizeof Md5Context::block;
constexpr unsigned LENGTH_AT = 56; // the message length fills the last 8 bytes of the last block
constexpr std::uint8_t PADDING[BLOCK_SIZE] = {0x80};

unsigned fill_of(const Md5Context* context)
{
    return (context->count[0] >> 3) % BLOCK_SIZE;
}

void unpack(std::uint32_t* words, const std::uint8_t* bytes, unsigned nwords)
{
    for (unsigned n = 0; n < nwords; ++n, bytes += 4)
        words[n] = std::uint32_t(bytes[0]) | std::uint32_t(bytes[1]) << 8 |
                   std::uint32_t(bytes[2]) << 16 | std::uint32_t(bytes[3]) << 24;
}

void pack(std::uint8_t* bytes, const std::uint32_t* words, unsigned nwords)
{
    for (unsigned n = 0; n < nwords; ++n)
        for (unsigned byte = 0; byte < 4; ++byte)
            *bytes++ = static_cast<std::uint8_t>(words[n] >> (8 * byte));
}

template <int BITS> constexpr std::uint32_t rotate(std::uint32_t x)
{
    return x << BITS | x >> (32 - BITS);
}

// One step of each round. The terms that don't wait for the step before (b) are apart, so that
// they can be computed while b is still on its way; in `g` the two halves share no bit, and a sum
// does the work of the or.
template <int BITS>
void f(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d, std::uint32_t term)
{
    a = b + rotate<BITS>(a + term + (d ^ (b & (c ^ d))));
}

template <int BITS>
void g(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d, std::uint32_t term)
{
    a = b + rotate<BITS>(a + term + (c & ~d) + (b & d));
}

template <int BITS>
void h(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d, std::uint32_t term)
{
    a = b + rotate<BITS>(a + term + (b ^ (c ^ d)));
}

template <int BITS>
void i(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d, std::uint32_t term)
{
    a = b + rotate<BITS>(a + term + (c ^ (b | ~d)));
}

// The four rounds, sixteen steps each. The additive constants are floor(2^32 * abs(sin(step))),
// step counted from 1.
void first_round(std::uint32_t& a, std::uint32_t& b, std::uint32_t& c, std::uint32_t& d,
                 const std::uint32_t* block)
{
    f<7>(a, b, c, d, block[0] + 0xD76AA478);
    f<12>(d, a, b, c, block[1] + 0xE8C7B756);
    f<17>(c, d, a, b, block[2] + 0x242070DB);
    f<22>(b, c, d, a, block[3] + 0xC1BDCEEE);
    f<7>(a, b, c, d, block[4] + 0xF57C0FAF);
    f<12>(d, a, b, c, block[5] + 0x4787C62A);
    f<17>(c, d, a, b, block[6] + 0xA8304613);
    f<22>(b, c, d, a, block[7] + 0xFD469501);
    f<7>(a, b, c, d, block[8] + 0x698098D8);
    f<12>(d, a, b, c, block[9] + 0x8B44F7AF);
    f<17>(c, d, a, b, block[10] + 0xFFFF5BB1);
    f<22>(b, c, d, a, block[11] + 0x895CD7BE);
    f<7>(a, b, c, d, block[12] + 0x6B901122);
    f<12>(d, a, b, c, block[13] + 0xFD987193);
    f<17>(c, d, a, b, block[14] + 0xA679438E);
    f<22>(b, c, d, a, block[15] + 0x49B40821);
}

void second_round(std::uint32_t& a, std::uint32_t& b, std::uint32_t& c, std::uint32_t& d,
                  const std::uint32_t* block)
{
    g<5>(a, b, c, d, block[1] + 0xF61E2562);
    g<9>(d, a, b, c, block[6] + 0xC040B340);
    g<14>(c, d, a, b, block[11] + 0x265E5A51);
    g<20>(b, c, d, a, block[0] + 0xE9B6C7AA);
    g<5>(a, b, c, d, block[5] + 0xD62F105D);
    g<9>(d, a, b, c, block[10] + 0x02441453);
    g<14>(c, d, a, b, block[15] + 0xD8A1E681);
    g<20>(b, c, d, a, block[4] + 0xE7D3FBC8);
    g<5>(a, b, c, d, block[9] + 0x21E1CDE6);
    g<9>(d, a, b, c, block[14] + 0xC33707D6);
    g<14>(c, d, a, b, block[3] + 0xF4D50D87);
    g<20>(b, c, d, a, block[8] + 0x455A14ED);
    g<5>(a, b, c, d, block[13] + 0xA9E3E905);
    g<9>(d, a, b, c, block[2] + 0xFCEFA3F8);
    g<14>(c, d, a, b, block[7] + 0x676F02D9);
    g<20>(b, c, d, a, block[12] + 0x8D2A4C8A);
}

void third_round(std::uint32_t& a, std::uint32_t& b, std::uint32_t& c, std::uint32_t& d,
                 const std::uint32_t* block)
{
    h<4>(a, b, c, d, block[5] + 0xFFFA3942);
    h<11>(d, a, b, c, block[8] + 0x8771F681);
    h<16>(c, d, a, b, block[11] + 0x6D9D6122);
    h<23>(b, c, d, a, block[14] + 0xFDE5380C);
    h<4>(a, b, c, d, block[1] + 0xA4BEEA44);
    h<11>(d, a, b, c, block[4] + 0x4BDECFA9);
    h<16>(c, d, a, b, block[7] + 0xF6BB4B60);
    h<23>(b, c, d, a, block[10] + 0xBEBFBC70);
    h<4>(a, b, c, d, block[13] + 0x289B7EC6);
    h<11>(d, a, b, c, block[0] + 0xEAA127FA);
    h<16>(c, d, a, b, block[3] + 0xD4EF3085);
    h<23>(b, c, d, a, block[6] + 0x04881D05);
    h<4>(a, b, c, d, block[9] + 0xD9D4D039);
    h<11>(d, a, b, c, block[12] + 0xE6DB99E5);
    h<16>(c, d, a, b, block[15] + 0x1FA27CF8);
    h<23>(b, c, d, a, block[2] + 0xC4AC5665);
}

void fourth_round(std::uint32_t& a, std::uint32_t& b, std::uint32_t& c, std::uint32_t& d,
                  const std::uint32_t* block)
{
    i<6>(a, b, c, d, block[0] + 0xF4292244);
    i<10>(d, a, b, c, block[7] + 0x432AFF97);
    i<15>(c, d, a, b, block[14] + 0xAB9423A7);
    i<21>(b, c, d, a, block[5] + 0xFC93A039);
    i<6>(a, b, c, d, block[12] + 0x655B59C3);
    i<10>(d, a, b, c, block[3] + 0x8F0CCC92);
    i<15>(c, d, a, b, block[10] + 0xFFEFF47D);
    i<21>(b, c, d, a, block[1] + 0x85845DD1);
    i<6>(a, b, c, d, block[8] + 0x6FA87E4F);
    i<10>(d, a, b, c, block[15] + 0xFE2CE6E0);
    i<15>(c, d, a, b, block[6] + 0xA3014314);
    i<21>(b, c, d, a, block[13] + 0x4E0811A1);
    i<6>(a, b, c, d, block[4] + 0xF7537E82);
    i<10>(d, a, b, c, block[11] + 0xBD3AF235);
    i<15>(c, d, a, b, block[2] + 0x2AD7D2BB);
    i<21>(b, c, d, a, block[9] + 0xEB86D391);
}

} // namespace

void md5_init(Md5Context* context)
{
    *context = {{0, 0}, {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476}, {}, {}};
}

void md5_update(Md5Context* context, const void* data, unsigned len)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    unsigned fill = fill_of(context);

    const std::uint32_t bits = len << 3;
    context->count[0] += bits;
    context->count[1] += (context->count[0] < bits ? 1 : 0) + (len >> 29);

    while (len > 0) {
        const unsigned part = std::min(len, BLOCK_SIZE - fill);
        std::memcpy(context->block + fill, bytes, part);
        bytes += part;
        len -= part;
        fill += part;
        if (fill == BLOCK_SIZE) {
            std::uint32_t words[16];
            unpack(words, context->block, 16);
            md5_transform(context->state, words);
            fill = 0;
        }
    }
}

void md5_final(void* digest, Md5Context* context)
{
    std::uint32_t words[16];
    words[14] = context->count[0];
    words[15] = context->count[1];

    const unsigned fill = fill_of(context);
    const unsigned length_at = fill < LENGTH_AT ? LENGTH_AT : LENGTH_AT + BLOCK_SIZE;
    md5_update(context, PADDING, length_at - fill);

    unpack(words, context->block, 14);
    md5_transform(context->state, words);
    pack(context->digest, context->state, 4);
    std::memcpy(digest, context->digest, sizeof context->digest);
}

void md5_transform(std::uint32_t* state, const std::uint32_t* block)
{
    std::uint32_t a = state[0];
    std::uint32_t b = state[1];
    std::uint32_t c = state[2];
    std::uint32_t d = state[3];

    first_round(a, b, c, d, block);
    second_round(a, b, c, d, block);
    third_round(a, b, c, d, block);
    fourth_round(a, b, c, d, block);

    state[0] += a;
    state[1] += b;
    state[2] += c;
    state[3] += d;
}
