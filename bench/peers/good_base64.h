// Base64 as a good library does it without vectors: with tables, four characters or three bytes at
// a time.
#pragma once

#include <cstddef>
#include <string>

// Appends the encoded form to `out`.
void table_base64_encode(const char* in, std::size_t size, std::string& out);

// Decodes in place and returns the length. Skips everything outside the alphabet.
std::size_t table_base64_decode(char* text, std::size_t size);
