// Runs of ASCII, which most texts of a page consist of, converted many at a time.
//
// Both functions convert from the start of the input up to the first unit that isn't ASCII, or stop
// a little earlier, and advance both positions. They may write past what they report, but never
// more than one element of the output for each element of the input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/portable/vectors.h"
#include "platform/wide.h"

namespace ascii_runs {

// On any processor: eight bytes, or four units, in one word.
inline void widen_wordwise(const unsigned char*& in, const unsigned char* end, wide_char*& out) {
  constexpr std::uint64_t not_ascii = 0x8080808080808080;
  std::uint64_t word = 0;
  for (; end - in >= 8; in += 8, out += 8) {
    std::memcpy(&word, in, sizeof word);
    if ((word & not_ascii) != 0) return;
    for (int i = 0; i < 8; ++i) out[i] = in[i];
  }
}

inline void narrow_wordwise(const wide_char*& in, const wide_char* end, char*& out) {
  constexpr std::uint64_t not_ascii = 0xFF80FF80FF80FF80;
  std::uint64_t word = 0;
  for (; end - in >= 4; in += 4, out += 4) {
    std::memcpy(&word, in, sizeof word);
    if ((word & not_ascii) != 0) return;
    for (int i = 0; i < 4; ++i) out[i] = static_cast<char>(in[i]);
  }
}

#if CFHOST_HAS_VECTORS

inline void store(void* at, __m128i value) { _mm_storeu_si128(static_cast<__m128i*>(at), value); }

inline __m128i load(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }

inline __m128i load_half(const void* at) {
  return _mm_loadl_epi64(static_cast<const __m128i*>(at));
}

inline void store_half(void* at, __m128i value) {
  _mm_storel_epi64(static_cast<__m128i*>(at), value);
}

inline bool is_ascii(__m128i bytes) { return _mm_movemask_epi8(bytes) == 0; }

inline void store_widened(wide_char* out, __m128i bytes) {
  store(out, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
  store(out + 8, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
}

// Thirty-two bytes at a time, then sixteen, then eight. A block is written whole; only the ASCII at
// its start counts.
inline void widen(const unsigned char*& in, const unsigned char* end, wide_char*& out) {
  for (; end - in >= 32; in += 32, out += 32) {
    const __m128i first = load(in), second = load(in + 16);
    if (!is_ascii(_mm_or_si128(first, second))) break;
    store_widened(out, first);
    store_widened(out + 16, second);
  }
  while (end - in >= 16) {
    const __m128i bytes = load(in);
    store_widened(out, bytes);
    const int others = _mm_movemask_epi8(bytes);
    const int run = others == 0 ? 16 : __builtin_ctz(static_cast<unsigned>(others));
    in += run;
    out += run;
    if (others != 0) return;
  }
  if (end - in >= 8) {
    const __m128i bytes = load_half(in);
    store(out, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
    const int others = _mm_movemask_epi8(bytes);
    const int run = others == 0 ? 8 : __builtin_ctz(static_cast<unsigned>(others));
    in += run;
    out += run;
  }
}

// Two bits for each unit that is ASCII.
inline unsigned ascii_units(__m128i units) {
  const __m128i others = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(others, _mm_setzero_si128())));
}

// Sixteen units at a time, then eight.
inline void narrow(const wide_char*& in, const wide_char* end, char*& out) {
  for (; end - in >= 16; in += 16, out += 16) {
    const __m128i first = load(in), second = load(in + 8);
    if (ascii_units(_mm_or_si128(first, second)) != 0xFFFF) break;
    store(out, _mm_packus_epi16(first, second));
  }
  while (end - in >= 8) {
    const __m128i units = load(in);
    store_half(out, _mm_packus_epi16(units, units));
    const unsigned others = ascii_units(units) ^ 0xFFFF;
    const int run = others == 0 ? 8 : __builtin_ctz(others) / 2;
    in += run;
    out += run;
    if (others != 0) return;
  }
}

// Convert a whole short text in two blocks, which overlap unless they are full. False, with
// anything in the output, if the text isn't ASCII or its length doesn't suit.
inline bool widen_short(const unsigned char* in, std::size_t size, wide_char* out) {
  if (size > 32) return false;
  if (size >= 16) {
    const __m128i first = load(in), last = load(in + size - 16);
    store_widened(out, first);
    store_widened(out + size - 16, last);
    return is_ascii(_mm_or_si128(first, last));
  }
  const __m128i zero = _mm_setzero_si128();
  if (size >= 8) {
    const __m128i first = load_half(in), last = load_half(in + size - 8);
    store(out, _mm_unpacklo_epi8(first, zero));
    store(out + size - 8, _mm_unpacklo_epi8(last, zero));
    return is_ascii(_mm_or_si128(first, last));
  }
  if (size < 4) return false;
  int first_bytes = 0, last_bytes = 0;
  std::memcpy(&first_bytes, in, sizeof first_bytes);
  std::memcpy(&last_bytes, in + size - 4, sizeof last_bytes);
  const __m128i first = _mm_cvtsi32_si128(first_bytes), last = _mm_cvtsi32_si128(last_bytes);
  store_half(out, _mm_unpacklo_epi8(first, zero));
  store_half(out + size - 4, _mm_unpacklo_epi8(last, zero));
  return is_ascii(_mm_or_si128(first, last));
}

inline bool narrow_short(const wide_char* in, std::size_t size, char* out) {
  if (size > 16 || size < 4) return false;
  if (size >= 8) {
    const __m128i first = load(in), last = load(in + size - 8);
    store_half(out, _mm_packus_epi16(first, first));
    store_half(out + size - 8, _mm_packus_epi16(last, last));
    return ascii_units(_mm_or_si128(first, last)) == 0xFFFF;
  }
  const __m128i first = load_half(in), last = load_half(in + size - 4);
  const int first_bytes = _mm_cvtsi128_si32(_mm_packus_epi16(first, first));
  const int last_bytes = _mm_cvtsi128_si32(_mm_packus_epi16(last, last));
  std::memcpy(out, &first_bytes, sizeof first_bytes);
  std::memcpy(out + size - 4, &last_bytes, sizeof last_bytes);
  return ascii_units(_mm_or_si128(first, last)) == 0xFFFF;
}

#else

inline void widen(const unsigned char*& in, const unsigned char* end, wide_char*& out) {
  widen_wordwise(in, end, out);
}

inline void narrow(const wide_char*& in, const wide_char* end, char*& out) {
  narrow_wordwise(in, end, out);
}

inline bool widen_short(const unsigned char*, std::size_t, wide_char*) { return false; }

inline bool narrow_short(const wide_char*, std::size_t, char*) { return false; }

#endif

}  // namespace ascii_runs
