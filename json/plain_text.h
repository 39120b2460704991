// The scan that most of the time of a parse goes into, over the plain bytes of a string, and the
// test of a text that is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// A byte that the decoder of a string has to look at: quote, backslash, control characters and NUL.
inline bool interrupts_text(char c) {
  return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
}

// The first such byte from `at` on, one at a time. The NUL at `end` stops the scan at the latest.
inline char* plain_text_end_bytewise(char* at) {
  while (!interrupts_text(*at)) ++at;
  return at;
}

// Eight bytes at once, on any processor. A byte has its top bit in the result if it is below 0x20,
// or if it becomes zero, and so below 1, by the exclusive or. A borrow can only set bits above the
// lowest one found, so that one is exact. Bytes from 0x80 up are masked out.
inline std::uint64_t interrupting_bytes(const char* at) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t tops = 0x8080808080808080;
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  const std::uint64_t quote = word ^ (ones * '"');
  const std::uint64_t backslash = word ^ (ones * '\\');
  return ((word - ones * 0x20) | (quote - ones) | (backslash - ones)) & ~word & tops;
}

// The same scan, a word at a time.
inline char* plain_text_end_wordwise(char* at, const char* end) {
  for (; end - at >= 8; at += 8) {
    const std::uint64_t found = interrupting_bytes(at);
    if (found != 0) return at + (__builtin_ctzll(found) >> 3);
  }
  return plain_text_end_bytewise(at);
}

#if defined(__SSE2__)
// Sixteen bytes at once, a bit for each.
inline int interrupting_bits(const char* at) {
  const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  const __m128i is_control = _mm_cmpeq_epi8(_mm_min_epu8(text, _mm_set1_epi8(0x1F)), text);
  const __m128i is_quote = _mm_cmpeq_epi8(text, _mm_set1_epi8('"'));
  const __m128i is_backslash = _mm_cmpeq_epi8(text, _mm_set1_epi8('\\'));
  return _mm_movemask_epi8(_mm_or_si128(is_control, _mm_or_si128(is_quote, is_backslash)));
}

// The same scan, sixteen bytes at a time. No load goes beyond `end`.
inline char* plain_text_end(char* at, const char* end) {
  for (; end - at >= 16; at += 16) {
    const int found = interrupting_bits(at);
    if (found != 0) return at + __builtin_ctz(static_cast<unsigned>(found));
  }
  return plain_text_end_bytewise(at);
}
#else
inline int interrupting_bits(const char* at) {
  return interrupting_bytes(at) != 0 || interrupting_bytes(at + 8) != 0;
}

inline char* plain_text_end(char* at, const char* end) { return plain_text_end_wordwise(at, end); }
#endif

// Whether no byte of a text of known length interrupts it. The last block overlaps the one before.
inline bool is_plain_text(const char* at, std::size_t size) {
  const char* const end = at + size;
  if (size >= 16) {
    for (; end - at > 16; at += 16) {
      if (interrupting_bits(at) != 0) return false;
    }
    return interrupting_bits(end - 16) == 0;
  }
  if (size >= 8) return (interrupting_bytes(at) | interrupting_bytes(end - 8)) == 0;
  while (at != end && !interrupts_text(*at)) ++at;
  return at == end;
}
