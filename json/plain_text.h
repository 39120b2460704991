// Which bytes of a string literal need attention. Used for texts that are read and for those that
// are written, many bytes at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/portable/vectors.h"

// Quote, backslash, control characters and NUL.
constexpr bool interrupts_text(char c) {
  return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
}

// Eight bytes at once, on any processor: sets the top bit of each byte that interrupts, and no
// other. The sums never carry into the next byte.
inline std::uint64_t interrupting_tops(std::uint64_t word) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t tops = 0x80 * ones;
  const std::uint64_t low = word & ~tops;
  const std::uint64_t not_quote = (low ^ ones * '"') + 0x7F * ones;
  const std::uint64_t not_backslash = (low ^ ones * '\\') + 0x7F * ones;
  const std::uint64_t not_control = low + 0x60 * ones;
  return ~((not_quote & not_backslash & not_control) | word) & tops;
}

inline std::uint64_t interrupting_tops(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return interrupting_tops(word);
}

// The top bit of each byte that is `c`, which is ASCII.
inline std::uint64_t equal_tops(const char* at, char c) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t tops = 0x80 * ones;
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  const std::uint64_t different =
      ((word & ~tops) ^ ones * static_cast<unsigned char>(c)) + 0x7F * ones;
  return ~(different | word) & tops;
}

// The top bits of sixteen bytes, the first one lowest. The multiplication gathers eight in one
// byte.
inline unsigned gathered_tops(std::uint64_t first, std::uint64_t second) {
  constexpr std::uint64_t gather = 0x0102040810204080;
  return static_cast<unsigned>((second >> 7) * gather >> 56 << 8 | (first >> 7) * gather >> 56);
}

// Sixteen bytes at once, a bit for each, the first one lowest.
inline unsigned interrupting_bits_wordwise(const char* at) {
  return gathered_tops(interrupting_tops(at), interrupting_tops(at + 8));
}

inline unsigned equal_bits_wordwise(const char* at, char c) {
  return gathered_tops(equal_tops(at, c), equal_tops(at + 8, c));
}

#if CFHOST_HAS_VECTORS
inline unsigned interrupting_bits(const char* at) {
  const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  const __m128i is_control = _mm_cmpeq_epi8(_mm_min_epu8(text, _mm_set1_epi8(0x1F)), text);
  const __m128i is_quote = _mm_cmpeq_epi8(text, _mm_set1_epi8('"'));
  const __m128i is_backslash = _mm_cmpeq_epi8(text, _mm_set1_epi8('\\'));
  const __m128i any = _mm_or_si128(is_control, _mm_or_si128(is_quote, is_backslash));
  return static_cast<unsigned>(_mm_movemask_epi8(any));
}

// Whether all of 64 bytes are plain. A byte that interrupts becomes zero in one of three ways.
inline bool is_plain_window(const char* at) {
  const auto least = [at](int i) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at) + i);
    const __m128i control = _mm_subs_epu8(text, _mm_set1_epi8(0x1F));
    const __m128i quote = _mm_xor_si128(text, _mm_set1_epi8('"'));
    const __m128i backslash = _mm_xor_si128(text, _mm_set1_epi8('\\'));
    return _mm_min_epu8(control, _mm_min_epu8(quote, backslash));
  };
  const __m128i all =
      _mm_min_epu8(_mm_min_epu8(least(0), least(1)), _mm_min_epu8(least(2), least(3)));
  return _mm_movemask_epi8(_mm_cmpeq_epi8(all, _mm_setzero_si128())) == 0;
}
#else
inline unsigned interrupting_bits(const char* at) { return interrupting_bits_wordwise(at); }

inline bool is_plain_window(const char* at) {
  std::uint64_t found = 0;
  for (int i = 0; i < 64; i += 8) found |= interrupting_tops(at + i);
  return found == 0;
}
#endif

// Whether a text of known length has no byte that interrupts it. The last block overlaps the one
// before, and a short text fills one word, some bytes twice.
inline bool is_plain_text(const char* at, std::size_t size) {
  const char* const end = at + size;
  if (size >= 16) {
    for (; end - at > 16; at += 16) {
      if (interrupting_bits(at) != 0) return false;
    }
    return interrupting_bits(end - 16) == 0;
  }
  if (size >= 8) return (interrupting_tops(at) | interrupting_tops(end - 8)) == 0;
  if (size >= 4) {
    std::uint32_t halves[2] = {};
    std::memcpy(&halves[0], at, 4);
    std::memcpy(&halves[1], end - 4, 4);
    return interrupting_tops(halves[0] | std::uint64_t{halves[1]} << 32) == 0;
  }
  return size == 0 ||
         (!interrupts_text(at[0]) && !interrupts_text(at[size / 2]) && !interrupts_text(end[-1]));
}
