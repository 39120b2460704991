// The scan that most of the time of a parse goes into: over the plain bytes of a string.
#pragma once

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

// The same, eight bytes at a time, on any processor. A byte has its top bit in `found` if it is
// below 0x20, or if it becomes zero, and so below 1, by the exclusive or. A borrow can only set
// bits above the lowest one found, so that one is exact. Bytes from 0x80 up are masked out.
inline char* plain_text_end_wordwise(char* at, const char* end) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t tops = 0x8080808080808080;
  for (; end - at >= 8; at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    const std::uint64_t quote = word ^ (ones * '"');
    const std::uint64_t backslash = word ^ (ones * '\\');
    const std::uint64_t found =
        ((word - ones * 0x20) | (quote - ones) | (backslash - ones)) & ~word & tops;
    if (found != 0) return at + (__builtin_ctzll(found) >> 3);
  }
  return plain_text_end_bytewise(at);
}

#if defined(__SSE2__)
// The same, sixteen bytes at a time. No load goes beyond `end`.
inline char* plain_text_end(char* at, const char* end) {
  const __m128i quote = _mm_set1_epi8('"');
  const __m128i backslash = _mm_set1_epi8('\\');
  const __m128i last_control = _mm_set1_epi8(0x1F);
  for (; end - at >= 16; at += 16) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i is_control = _mm_cmpeq_epi8(_mm_min_epu8(text, last_control), text);
    const __m128i is_quote = _mm_cmpeq_epi8(text, quote);
    const __m128i is_backslash = _mm_cmpeq_epi8(text, backslash);
    const int found =
        _mm_movemask_epi8(_mm_or_si128(is_control, _mm_or_si128(is_quote, is_backslash)));
    if (found != 0) return at + __builtin_ctz(static_cast<unsigned>(found));
  }
  return plain_text_end_bytewise(at);
}
#else
inline char* plain_text_end(char* at, const char* end) { return plain_text_end_wordwise(at, end); }
#endif
