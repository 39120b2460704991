// Base64 (RFC 4648, standard alphabet). The encoder writes one unbroken, padded line. The decoder
// is lenient: it skips every byte outside the alphabet, padding included, and checks neither length
// nor padding. Neither writes a terminator. Every width of vectors up to `base64_vector_width`
// gives the same results.
#pragma once

#include <cstdint>

#include "transport/codecs/base64_vector.h"

// The longest text to encode, in bytes: four times its length still fits 32 signed bits.
constexpr std::int32_t max_base64_input = 536'870'911;

// Length of the encoded form of n bytes. Requires 0 <= n <= max_base64_input.
std::int32_t base64_encoded_length(std::int32_t n);

// Encodes n bytes. `length` holds the capacity of `destination` and receives the number of
// characters written. Returns 0 on success; -1, with nothing written, for a null argument, a
// capacity below base64_encoded_length(n), or an n out of range.
int base64_encode(const char* source, std::int32_t n, char* destination, std::int32_t* length,
                  int width = base64_vector_width);

// Decodes up to `source_end`, or to a NUL where a group of four would begin. `length` holds the
// capacity of `destination` and receives the number of bytes that the text decodes to. Returns 0 on
// success; -1 if they exceed the capacity or `destination` is null. Then `destination` holds the
// groups before the first one that didn't fit, and the count is still the full one. Bits left over
// at the end are dropped. `destination` may be the source itself, but may not overlap it in any
// other way.
int base64_decode(const char* source, char* destination, std::int32_t* length,
                  const char* source_end, int width = base64_vector_width);
