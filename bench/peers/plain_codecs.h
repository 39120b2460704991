// The obvious codecs: one element at a time, and no tables except the alphabet.
#pragma once

#include <cstddef>

// Each writes its whole result to `out`, which must have room for it, and returns its length. The
// decoder skips everything outside the alphabet.
std::size_t plain_base64_encode(const unsigned char* in, std::size_t size, char* out);
std::size_t plain_base64_decode(const char* in, std::size_t size, char* out);
std::size_t plain_utf8_to_utf16(const char* in, std::size_t size, char16_t* out);
std::size_t plain_utf16_to_utf8(const char16_t* in, std::size_t size, char* out);
