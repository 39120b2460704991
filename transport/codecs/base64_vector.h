// Base64 on 16 or 32 characters at a time, where the processor can do it. Both functions handle as
// much of the start of their input as they can, in steps of `width`, and leave the rest to the
// plain code. `width` may be at most `base64_vector_width`.
#pragma once

#include <cstddef>

// The widest steps that the processor at hand can take: 32, 16 or, for none, 0.
extern const int base64_vector_width;

struct base64_progress {
  std::size_t read = 0;     // bytes of the source that are done
  std::size_t written = 0;  // bytes of the destination that are final
};

// Decodes whole groups of characters of the alphabet, up to the first other byte. Uses at most
// `room` bytes of the destination. It may write beyond what it reports as written, but never beyond
// what it reports as read, so a text can be decoded where it lies.
base64_progress base64_decode_vector(const char* source, std::size_t size, char* destination,
                                     std::size_t room, int width);

// Encodes whole groups of three bytes. Requires room for the encoded form of the whole source.
base64_progress base64_encode_vector(const char* source, std::size_t size, char* destination,
                                     int width);
