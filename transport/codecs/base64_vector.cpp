#include "transport/codecs/base64_vector.h"

#include <algorithm>

#include "platform/portable/vectors.h"

const int base64_vector_width = vector_width();

#if CFHOST_HAS_VECTORS

namespace {

CFHOST_SSSE3 inline __m128i load(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

CFHOST_SSSE3 inline void store(char* at, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(at), value);
}

// The values of sixteen characters, and false if one of them is foreign.
//
// The high half of a character names its range, and with it what to add to get its value; only '/'
// differs from '+' within one half. The low half names the high halves that it must not occur with,
// one bit for each. A character is foreign if the two lookups have a bit in common.
CFHOST_SSSE3 inline __m128i forbidden_by_low() {
  return _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B,
                       0x1B, 0x1B, 0x1A);
}

CFHOST_SSSE3 inline __m128i bit_of_high() {
  return _mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10,
                       0x10, 0x10, 0x10);
}

CFHOST_SSSE3 inline __m128i offset_of_high() {
  return _mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
}

CFHOST_SSSE3 inline bool six_bits(__m128i characters, __m128i& values) {
  const __m128i half = _mm_set1_epi8(0x0F);
  const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), half);
  const __m128i low = _mm_and_si128(characters, half);
  const __m128i foreign = _mm_and_si128(_mm_shuffle_epi8(forbidden_by_low(), low),
                                        _mm_shuffle_epi8(bit_of_high(), high));
  const __m128i is_slash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
  const __m128i offset = _mm_shuffle_epi8(offset_of_high(), _mm_add_epi8(high, is_slash));
  values = _mm_add_epi8(characters, offset);
  return _mm_movemask_epi8(_mm_cmpeq_epi8(foreign, _mm_setzero_si128())) == 0xFFFF;
}

CFHOST_SSSE3 inline __m128i order_of_joined() {
  return _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
}

// Joins every four six-bit values to three bytes; the last four bytes of the result are zero.
CFHOST_SSSE3 inline __m128i join_six_bits(__m128i values) {
  const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
  const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));
  return _mm_shuffle_epi8(groups, order_of_joined());
}

CFHOST_SSSE3 base64_progress decode(const char* source, std::size_t size, char* destination,
                                    std::size_t room, base64_progress done) {
  while (size - done.read >= 16 && room - done.written >= 16) {
    __m128i values;
    if (!six_bits(load(source + done.read), values)) break;
    store(destination + done.written, join_six_bits(values));
    done.read += 16;
    done.written += 12;
  }
  return done;
}

// Each lane gets the bytes b a c b of its group a b c, so that two multiplications can shift the
// four values into place.
CFHOST_SSSE3 inline __m128i order_of_split() {
  return _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
}

// The sixteen six-bit values in lanes of that order.
CFHOST_SSSE3 inline __m128i split_lanes(__m128i lanes) {
  const __m128i first_and_third =
      _mm_mulhi_epu16(_mm_and_si128(lanes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
  const __m128i second_and_fourth =
      _mm_mullo_epi16(_mm_and_si128(lanes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
  return _mm_or_si128(first_and_third, second_and_fourth);
}

// The difference between a range's characters and their values. Index 0 is for values 0 to 25, 1
// for 26 to 51, and 2 to 13 are for 52 to 63.
CFHOST_SSSE3 inline __m128i offset_of_range() {
  return _mm_setr_epi8('A', 'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                       '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 0, 0);
}

// The characters of sixteen values.
CFHOST_SSSE3 inline __m128i characters_of(__m128i values) {
  const __m128i above_letters = _mm_subs_epu8(values, _mm_set1_epi8(51));
  const __m128i minus_beyond_capitals = _mm_cmpgt_epi8(values, _mm_set1_epi8(25));
  const __m128i range = _mm_sub_epi8(above_letters, minus_beyond_capitals);
  return _mm_add_epi8(values, _mm_shuffle_epi8(offset_of_range(), range));
}

CFHOST_SSSE3 base64_progress encode(const char* source, std::size_t size, char* destination,
                                    base64_progress done) {
  for (; size - done.read >= 16; done.read += 12, done.written += 16) {
    store(destination + done.written,
          characters_of(split_lanes(_mm_shuffle_epi8(load(source + done.read), order_of_split()))));
  }
  // What is left is shorter than a load. So a whole load that ends there is encoded; the bytes
  // before it that are encoded again give the same characters.
  const __m128i order = _mm_add_epi8(order_of_split(), _mm_set1_epi8(4));
  const std::size_t whole = size / 3 * 3;
  while (done.read < whole) {
    const std::size_t end = std::min(done.read + 12, whole);
    if (end < 16) break;
    const __m128i lanes = _mm_shuffle_epi8(load(source + end - 16), order);
    done = {end, end / 3 * 4};
    store(destination + done.written - 16, characters_of(split_lanes(lanes)));
  }
  return done;
}

#if CFHOST_HAS_AVX2

// The same steps on two halves of sixteen bytes at once; every instruction works within its half.

CFHOST_AVX2 inline __m256i both(__m128i half) { return _mm256_broadcastsi128_si256(half); }

CFHOST_AVX2 inline bool six_bits(__m256i characters, __m256i& values) {
  const __m256i half = _mm256_set1_epi8(0x0F);
  const __m256i high = _mm256_and_si256(_mm256_srli_epi32(characters, 4), half);
  const __m256i low = _mm256_and_si256(characters, half);
  const __m256i foreign = _mm256_and_si256(_mm256_shuffle_epi8(both(forbidden_by_low()), low),
                                           _mm256_shuffle_epi8(both(bit_of_high()), high));
  const __m256i is_slash = _mm256_cmpeq_epi8(characters, _mm256_set1_epi8('/'));
  const __m256i offset =
      _mm256_shuffle_epi8(both(offset_of_high()), _mm256_add_epi8(high, is_slash));
  values = _mm256_add_epi8(characters, offset);
  return _mm256_testz_si256(foreign, foreign) != 0;
}

// The twelve bytes of each half, one after the other; the last eight bytes of the result are zero.
CFHOST_AVX2 inline __m256i join_six_bits(__m256i values) {
  const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
  const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
  return _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, both(order_of_joined())),
                                     _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}

CFHOST_AVX2 base64_progress decode_wide(const char* source, std::size_t size, char* destination,
                                        std::size_t room) {
  base64_progress done;
  while (size - done.read >= 32 && room - done.written >= 32) {
    const auto* const from = reinterpret_cast<const __m256i*>(source + done.read);
    __m256i values;
    if (!six_bits(_mm256_loadu_si256(from), values)) break;
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + done.written),
                        join_six_bits(values));
    done.read += 32;
    done.written += 24;
  }
  return done;
}

CFHOST_AVX2 inline __m256i split_lanes(__m256i lanes) {
  const __m256i first_and_third = _mm256_mulhi_epu16(
      _mm256_and_si256(lanes, _mm256_set1_epi32(0x0FC0FC00)), _mm256_set1_epi32(0x04000040));
  const __m256i second_and_fourth = _mm256_mullo_epi16(
      _mm256_and_si256(lanes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
  return _mm256_or_si256(first_and_third, second_and_fourth);
}

CFHOST_AVX2 inline __m256i characters_of(__m256i values) {
  const __m256i above_letters = _mm256_subs_epu8(values, _mm256_set1_epi8(51));
  const __m256i minus_beyond_capitals = _mm256_cmpgt_epi8(values, _mm256_set1_epi8(25));
  const __m256i range = _mm256_sub_epi8(above_letters, minus_beyond_capitals);
  return _mm256_add_epi8(values, _mm256_shuffle_epi8(both(offset_of_range()), range));
}

CFHOST_AVX2 base64_progress encode_wide(const char* source, std::size_t size, char* destination) {
  base64_progress done;
#pragma GCC unroll 2
  for (; size - done.read >= 28; done.read += 24, done.written += 32) {
    const char* const from = source + done.read;
    const __m256i bytes = _mm256_setr_m128i(load(from), load(from + 12));
    _mm256_storeu_si256(
        reinterpret_cast<__m256i*>(destination + done.written),
        characters_of(split_lanes(_mm256_shuffle_epi8(bytes, both(order_of_split())))));
  }
  return done;
}

#else

base64_progress decode_wide(const char*, std::size_t, char*, std::size_t) { return {}; }

base64_progress encode_wide(const char*, std::size_t, char*) { return {}; }

#endif

// The wide registers aren't worth it for a shorter text.
constexpr std::size_t shortest_wide = 64;

}  // namespace

base64_progress base64_decode_vector(const char* source, std::size_t size, char* destination,
                                     std::size_t room, int width) {
  if (width == 0) return {};
  base64_progress done;
  if (width == 32 && size >= shortest_wide) done = decode_wide(source, size, destination, room);
  return decode(source, size, destination, room, done);
}

base64_progress base64_encode_vector(const char* source, std::size_t size, char* destination,
                                     int width) {
  if (width == 0) return {};
  base64_progress done;
  if (width == 32 && size >= shortest_wide) done = encode_wide(source, size, destination);
  return encode(source, size, destination, done);
}

#else

base64_progress base64_decode_vector(const char*, std::size_t, char*, std::size_t, int) {
  return {};
}

base64_progress base64_encode_vector(const char*, std::size_t, char*, int) { return {}; }

#endif
