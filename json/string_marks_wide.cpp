// The scan of blocks with vectors of 32 bytes.
#include "json/string_marks.h"

#if CFHOST_HAS_AVX2

#define CFHOST_WIDE [[gnu::target("avx2,bmi,pclmul,popcnt")]]

const int string_marks_width = vector_width() == 32 && __builtin_cpu_supports("bmi") &&
                                       __builtin_cpu_supports("pclmul") &&
                                       __builtin_cpu_supports("popcnt")
                                   ? 32
                                   : 16;

namespace {

CFHOST_WIDE inline __m256i load(const char* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

CFHOST_WIDE inline std::uint64_t bits_of(__m256i first, __m256i second) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(first)) |
         std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(second))} << 32;
}

CFHOST_WIDE inline __m256i equal(__m256i text, char c) {
  return _mm256_cmpeq_epi8(text, _mm256_set1_epi8(c));
}

CFHOST_WIDE inline __m256i others(__m256i text) {
  const __m256i is_control = _mm256_cmpeq_epi8(_mm256_min_epu8(text, _mm256_set1_epi8(0x1F)), text);
  return _mm256_or_si256(is_control, equal(text, '\\'));
}

CFHOST_WIDE inline std::uint64_t odd_up_to_wide(std::uint64_t bits) {
  const __m128i product =
      _mm_clmulepi64_si128(_mm_cvtsi64_si128(static_cast<long long>(bits)), _mm_set1_epi8(-1), 0);
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
}

// Saves the loop's test for each place: most blocks have no more places than are stored without
// one. What is stored beyond the last place is overwritten later.
CFHOST_WIDE inline char** store_wide(char** out, char* at, std::uint64_t found) {
  constexpr int stored_unasked = 8;
  char** const end = out + _mm_popcnt_u64(found);
#pragma GCC unroll 8
  for (int i = 0; i < stored_unasked; ++i, found &= found - 1) out[i] = at + _tzcnt_u64(found);
  for (out += stored_unasked; out < end; ++out, found &= found - 1) *out = at + _tzcnt_u64(found);
  return end;
}

// Whether a block has no byte to mark. Each of the three kinds becomes zero in its own way.
CFHOST_WIDE inline bool is_plain_block(__m256i first, __m256i second) {
  const __m256i least = _mm256_min_epu8(
      _mm256_min_epu8(_mm256_subs_epu8(first, _mm256_set1_epi8(0x1F)),
                      _mm256_subs_epu8(second, _mm256_set1_epi8(0x1F))),
      _mm256_min_epu8(_mm256_min_epu8(_mm256_xor_si256(first, _mm256_set1_epi8('"')),
                                      _mm256_xor_si256(second, _mm256_set1_epi8('"'))),
                      _mm256_min_epu8(_mm256_xor_si256(first, _mm256_set1_epi8('\\')),
                                      _mm256_xor_si256(second, _mm256_set1_epi8('\\')))));
  return _mm256_movemask_epi8(_mm256_cmpeq_epi8(least, _mm256_setzero_si256())) == 0;
}

}  // namespace

CFHOST_WIDE void string_marks::look_at_blocks_wide() {
  char* at = at_;
  char** last = last_;
  while (wants_block(last, at)) {
    const __m256i first = load(at), second = load(at + 32);
    const byte_marks marks = {bits_of(equal(first, '"'), equal(second, '"')),
                              bits_of(others(first), others(second))};
    const std::uint64_t backslashes =
        marks.others == 0 ? 0 : bits_of(equal(first, '\\'), equal(second, '\\'));
    last = store_wide(last, at,
                      ends_among(marks, odd_up_to_wide(marks.quotes), [=] { return backslashes; }));
    at += marked_block;
    if ((marks.quotes | marks.others) != 0) continue;
    // Within a long string.
    while (end_ - at >= marked_block) {
      if (!is_plain_block(load(at), load(at + 32))) break;
      at += marked_block;
    }
  }
  if (last - marks_ < enough) {
    const byte_marks marks = marks_of_end<marks_by_vector>(
        end_, static_cast<std::size_t>(end_ - at), static_cast<std::size_t>(end_ - text_));
    const auto backslashes = [&] { return backslashes_among(marks.others, at); };
    last = store_wide(last, at, ends_among(marks, odd_up_to_wide(marks.quotes), backslashes));
    *last++ = at = end_;
    ended_ = true;
  }
  at_ = at;
  last_ = last;
}

#undef CFHOST_WIDE

#else

const int string_marks_width = CFHOST_HAS_VECTORS ? 16 : 0;

void string_marks::look_at_blocks_wide() { look_at_blocks<marks_by_vector>(); }

#endif
