#include "platform/portable/two_byte_runs.h"

#include <array>
#include <bit>
#include <cstdint>

#include "platform/portable/vectors.h"

#if CFHOST_HAS_VECTORS

namespace two_byte_runs {
namespace {

using order = std::array<std::uint8_t, 16>;

// Which bytes of eight units stay, in their order, for each choice of lanes that count twice or not
// at all. The rest becomes zero.
template <class Stays>
consteval std::array<order, 256> make_orders(Stays stays) {
  std::array<order, 256> orders{};
  for (unsigned choice = 0; choice < 256; ++choice) {
    std::size_t size = 0;
    for (std::uint8_t byte = 0; byte < 16; ++byte) {
      if (stays(choice >> (byte / 2) & 1, byte % 2)) orders[choice][size++] = byte;
    }
    while (size < 16) orders[choice][size++] = 0x80;
  }
  return orders;
}

// For units of which the chosen ones are left out.
constexpr auto without_chosen = make_orders([](unsigned chosen, unsigned) { return chosen == 0; });

// For pairs of bytes of which the chosen ones stay whole, and the others are their first byte.
constexpr auto chosen_whole =
    make_orders([](unsigned chosen, unsigned second) { return chosen == 1 || second == 0; });

CFHOST_SSSE3 inline __m128i load(const void* at) {
  return _mm_loadu_si128(static_cast<const __m128i*>(at));
}

CFHOST_SSSE3 inline void store(void* at, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(at), value);
}

CFHOST_SSSE3 inline __m128i all(int value) { return _mm_set1_epi16(static_cast<short>(value)); }

CFHOST_SSSE3 inline __m128i bits(__m128i units, int mask) {
  return _mm_and_si128(units, all(mask));
}

CFHOST_SSSE3 inline __m128i eight_bytes(const unsigned char* at) {
  return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)),
                           _mm_setzero_si128());
}

CFHOST_SSSE3 inline __m128i is_continuation(__m128i bytes) {
  return _mm_cmpeq_epi16(bits(bytes, 0xC0), all(0x80));
}

// A bit for each lane.
CFHOST_SSSE3 inline unsigned lanes(__m128i mask) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(mask, _mm_setzero_si128())));
}

CFHOST_SSSE3 inline __m128i either(__m128i choice, __m128i chosen, __m128i other) {
  return _mm_or_si128(_mm_and_si128(choice, chosen), _mm_andnot_si128(choice, other));
}

// Each lane is joined with the byte behind it, and continuations are left out.
CFHOST_SSSE3 widened widen_steps(const unsigned char* in, const unsigned char* end,
                                 wide_char* out) {
  while (end - in >= 9) {
    const __m128i bytes = eight_bytes(in), next = eight_bytes(in + 1);
    const __m128i lead =
        _mm_and_si128(_mm_cmpgt_epi16(bytes, all(0xC1)), _mm_cmpgt_epi16(all(0xE0), bytes));
    const __m128i continued = is_continuation(bytes);
    const __m128i known =
        _mm_or_si128(_mm_cmpgt_epi16(all(0x80), bytes), _mm_or_si128(lead, continued));
    const __m128i whole = _mm_cmpeq_epi16(is_continuation(next), lead);
    if (_mm_movemask_epi8(_mm_and_si128(known, whole)) != 0xFFFF) break;
    const unsigned left_out = lanes(continued);
    if ((left_out & 1) != 0) break;
    const __m128i joined = _mm_or_si128(_mm_slli_epi16(bits(bytes, 0x1F), 6), bits(next, 0x3F));
    store(out, _mm_shuffle_epi8(either(lead, joined, bytes), load(&without_chosen[left_out])));
    out += 8 - std::popcount(left_out);
    in += 8 + (_mm_extract_epi16(lead, 7) & 1);
  }
  return {in, out};
}

CFHOST_SSSE3 narrowed narrow_steps(const wide_char* in, const wide_char* end, char* out) {
  for (; end - in >= 8; in += 8) {
    const __m128i units = load(in);
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(bits(units, 0xF800), _mm_setzero_si128())) != 0xFFFF) {
      break;
    }
    const __m128i takes_two = _mm_cmpgt_epi16(units, all(0x7F));
    const __m128i first = _mm_or_si128(_mm_srli_epi16(units, 6), all(0xC0));
    const __m128i second = _mm_or_si128(_mm_slli_epi16(bits(units, 0x3F), 8), all(0x8000));
    const unsigned whole = lanes(takes_two);
    store(out, _mm_shuffle_epi8(either(takes_two, _mm_or_si128(first, second), units),
                                load(&chosen_whole[whole])));
    out += 8 + std::popcount(whole);
  }
  return {in, out};
}

const bool can_shuffle = vector_width() >= 16;

}  // namespace

widened widen(const unsigned char* in, const unsigned char* end, wide_char* out) {
  return can_shuffle ? widen_steps(in, end, out) : widened{in, out};
}

narrowed narrow(const wide_char* in, const wide_char* end, char* out) {
  return can_shuffle ? narrow_steps(in, end, out) : narrowed{in, out};
}

}  // namespace two_byte_runs

#else

namespace two_byte_runs {

widened widen(const unsigned char* in, const unsigned char*, wide_char* out) { return {in, out}; }
narrowed narrow(const wide_char* in, const wide_char*, char* out) { return {in, out}; }

}  // namespace two_byte_runs

#endif
