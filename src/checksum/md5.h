// The MD5 digest of RFC 1321, over a message given in one piece or in many.
#pragma once

#include <cstdint>

// The state of one computation, a local object of the caller. md5_init begins it, any number of
// md5_update calls feed it, md5_final ends it.
struct Md5Context
{
    std::uint32_t count[2];  // message bits so far, low word first
    std::uint32_t state[4];  // the chaining variables A, B, C, D
    std::uint8_t block[64];  // the input block being filled
    std::uint8_t digest[16]; // the result, valid after md5_final
};

void md5_init(Md5Context* context);
void md5_update(Md5Context* context, const void* data, unsigned len);
// Stores the digest in the context and in the 16 bytes at digest.
void md5_final(void* digest, Md5Context* context);

// One block of sixteen words into the four chaining variables.
void md5_transform(std::uint32_t* state, const std::uint32_t* block);
