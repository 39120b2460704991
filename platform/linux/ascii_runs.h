// Runs of ASCII, which most texts of a page consist of, converted many at a time.
//
// Both functions convert from the start of the input up to the first unit that isn't ASCII, or a
// little less, and step both positions on. They may write behind what they report, but not beyond
// one element of the output for each element of the input.
#pragma once

#include <cstdint>
#include <cstring>

#include "platform/wide.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

#if defined(__SSE2__)

inline void store(void* at, __m128i value) { _mm_storeu_si128(static_cast<__m128i*>(at), value); }

// Sixteen bytes at a time, then eight. A block is written whole, and as much of it counts as is
// ASCII.
inline void widen(const unsigned char*& in, const unsigned char* end, wide_char*& out) {
  const __m128i zero = _mm_setzero_si128();
  while (end - in >= 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    store(out, _mm_unpacklo_epi8(bytes, zero));
    store(out + 8, _mm_unpackhi_epi8(bytes, zero));
    const int others = _mm_movemask_epi8(bytes);
    const int run = others == 0 ? 16 : __builtin_ctz(static_cast<unsigned>(others));
    in += run;
    out += run;
    if (others != 0) return;
  }
  if (end - in >= 8) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
    store(out, _mm_unpacklo_epi8(bytes, zero));
    const int others = _mm_movemask_epi8(bytes);
    const int run = others == 0 ? 8 : __builtin_ctz(static_cast<unsigned>(others));
    in += run;
    out += run;
  }
}

// Eight units at a time.
inline void narrow(const wide_char*& in, const wide_char* end, char*& out) {
  const __m128i not_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
  while (end - in >= 8) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    const __m128i is_ascii = _mm_cmpeq_epi16(_mm_and_si128(units, not_ascii), _mm_setzero_si128());
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
    const unsigned others = static_cast<unsigned>(_mm_movemask_epi8(is_ascii)) ^ 0xFFFF;
    const int run = others == 0 ? 8 : __builtin_ctz(others) / 2;
    in += run;
    out += run;
    if (others != 0) return;
  }
}

#else

inline void widen(const unsigned char*& in, const unsigned char* end, wide_char*& out) {
  widen_wordwise(in, end, out);
}

inline void narrow(const wide_char*& in, const wide_char* end, char*& out) {
  narrow_wordwise(in, end, out);
}

#endif

}  // namespace ascii_runs
