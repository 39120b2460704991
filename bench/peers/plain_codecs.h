// The codecs that everybody writes first: one element at a time, no tables beyond the alphabet's.
#pragma once

#include <cstddef>

// Each writes its whole result to `out`, which has room for it, and gives its length. The decoder
// skips all that isn't of the alphabet.
std::size_t plain_base64_encode(const unsigned char* in, std::size_t size, char* out);
std::size_t plain_base64_decode(const char* in, std::size_t size, char* out);
std::size_t plain_utf8_to_utf16(const char* in, std::size_t size, char16_t* out);
std::size_t plain_utf16_to_utf8(const char16_t* in, std::size_t size, char* out);
