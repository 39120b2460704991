#include "transport/base64_vector.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <algorithm>
#include <cstring>

namespace {

// Asked once, at start: the baseline of the architecture lacks the byte shuffle.
const bool has_byte_shuffle = __builtin_cpu_supports("ssse3") != 0;

#define CFHOST_SSSE3 [[gnu::target("ssse3")]]

CFHOST_SSSE3 inline __m128i load(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

CFHOST_SSSE3 inline void store(char* at, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(at), value);
}

// The six bits of sixteen characters, and false if one of them is foreign.
//
// A character's high half names its range, and with it what has to be added to get its value; only
// '/' differs from '+' within one half. Its low half names the high halves that it must not occur
// with, one bit for each: the union of the two lookups shows the foreign characters.
CFHOST_SSSE3 inline bool six_bits(__m128i characters, __m128i& values) {
  const __m128i forbidden_by_low = _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                                                 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A);
  const __m128i bit_of_high = _mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10,
                                            0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
  const __m128i offset_of_high =
      _mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);

  const __m128i half = _mm_set1_epi8(0x0F);
  const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), half);
  const __m128i low = _mm_and_si128(characters, half);
  const __m128i foreign =
      _mm_and_si128(_mm_shuffle_epi8(forbidden_by_low, low), _mm_shuffle_epi8(bit_of_high, high));
  const __m128i is_slash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
  const __m128i offset = _mm_shuffle_epi8(offset_of_high, _mm_add_epi8(high, is_slash));
  values = _mm_add_epi8(characters, offset);
  return _mm_movemask_epi8(_mm_cmpeq_epi8(foreign, _mm_setzero_si128())) == 0xFFFF;
}

// Joins each four values of six bits to three bytes; the last four bytes of the result are zero.
CFHOST_SSSE3 inline __m128i join_six_bits(__m128i values) {
  const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
  const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));
  return _mm_shuffle_epi8(groups,
                          _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
}

CFHOST_SSSE3 base64_progress decode(const char* source, std::size_t size, char* destination,
                                    std::size_t room) {
  base64_progress done;
  while (size - done.read >= 16 && room - done.written >= 16) {
    __m128i values;
    if (!six_bits(load(source + done.read), values)) break;
    store(destination + done.written, join_six_bits(values));
    done.read += 16;
    done.written += 12;
  }
  return done;
}

// Spreads twelve bytes over sixteen values of six bits.
CFHOST_SSSE3 inline __m128i split_to_six_bits(__m128i bytes) {
  // Each lane gets the bytes b a c b of its group a b c, so that two multiplications can shift the
  // four values to their places.
  const __m128i lanes =
      _mm_shuffle_epi8(bytes, _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  const __m128i first_and_third =
      _mm_mulhi_epu16(_mm_and_si128(lanes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
  const __m128i second_and_fourth =
      _mm_mullo_epi16(_mm_and_si128(lanes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
  return _mm_or_si128(first_and_third, second_and_fourth);
}

// The characters of sixteen values. Values of one range differ from their characters by one number;
// the lookup takes 0 for the range of 26 to 51, 1 to 12 for 52 to 63, and 13 for 0 to 25.
CFHOST_SSSE3 inline __m128i characters_of(__m128i values) {
  const __m128i offsets =
      _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                    '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
  const __m128i above_letters = _mm_subs_epu8(values, _mm_set1_epi8(51));
  const __m128i is_capital = _mm_cmpgt_epi8(_mm_set1_epi8(26), values);
  const __m128i range = _mm_or_si128(above_letters, _mm_and_si128(is_capital, _mm_set1_epi8(13)));
  return _mm_add_epi8(values, _mm_shuffle_epi8(offsets, range));
}

CFHOST_SSSE3 base64_progress encode(const char* source, std::size_t size, char* destination) {
  base64_progress done;
  for (; size - done.read >= 16; done.read += 12, done.written += 16) {
    store(destination + done.written, characters_of(split_to_six_bits(load(source + done.read))));
  }
  // The same on copies, since what is left of the source is shorter than a load.
  while (size - done.read >= 3) {
    const std::size_t groups = std::min<std::size_t>((size - done.read) / 3, 4);
    char bytes[16] = {};
    char characters[16];
    std::memcpy(bytes, source + done.read, 3 * groups);
    store(characters, characters_of(split_to_six_bits(load(bytes))));
    std::memcpy(destination + done.written, characters, 4 * groups);
    done.read += 3 * groups;
    done.written += 4 * groups;
  }
  return done;
}

#undef CFHOST_SSSE3

}  // namespace

base64_progress base64_decode_vector(const char* source, std::size_t size, char* destination,
                                     std::size_t room) {
  return has_byte_shuffle ? decode(source, size, destination, room) : base64_progress{};
}

base64_progress base64_encode_vector(const char* source, std::size_t size, char* destination) {
  return has_byte_shuffle ? encode(source, size, destination) : base64_progress{};
}

#else

base64_progress base64_decode_vector(const char*, std::size_t, char*, std::size_t) { return {}; }

base64_progress base64_encode_vector(const char*, std::size_t, char*) { return {}; }

#endif
