// Which bytes of a text are quotes, and which others can't stand in a string as they are. There is
// a bit for each byte; the lowest is the first byte's.
#pragma once

#include <cstddef>
#include <cstdint>

#include "json/plain_text.h"

struct byte_marks {
  std::uint64_t quotes = 0;
  std::uint64_t others = 0;  // backslashes and control characters, NUL among them

  byte_marks& operator|=(byte_marks more) {
    quotes |= more.quotes;
    others |= more.others;
    return *this;
  }
  friend byte_marks operator<<(byte_marks m, std::size_t places) {
    return {m.quotes << places, m.others << places};
  }
  friend byte_marks operator>>(byte_marks m, std::size_t places) {
    return {m.quotes >> places, m.others >> places};
  }
};

// Examines sixteen bytes.
using marks_of_sixteen = byte_marks(const char* at);

// On any processor.
inline byte_marks marks_by_words(const char* at) {
  const std::uint64_t quotes = equal_bits_wordwise(at, '"');
  return {quotes, interrupting_bits_wordwise(at) & ~quotes};
}

#if CFHOST_HAS_VECTORS
inline byte_marks marks_by_vector(const char* at) {
  const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  const __m128i is_quote = _mm_cmpeq_epi8(text, _mm_set1_epi8('"'));
  const __m128i is_control = _mm_cmpeq_epi8(_mm_min_epu8(text, _mm_set1_epi8(0x1F)), text);
  const __m128i is_backslash = _mm_cmpeq_epi8(text, _mm_set1_epi8('\\'));
  const int others = _mm_movemask_epi8(_mm_or_si128(is_control, is_backslash));
  return {static_cast<unsigned>(_mm_movemask_epi8(is_quote)), static_cast<unsigned>(others)};
}
#else
inline byte_marks marks_by_vector(const char* at) { return marks_by_words(at); }
#endif

constexpr std::ptrdiff_t marked_block = 64;

template <marks_of_sixteen Look>
byte_marks marks_of_block(const char* at) {
  byte_marks marks = Look(at);
  for (std::size_t i = 16; i < marked_block; i += 16) marks |= Look(at + i) << i;
  return marks;
}

// The marks of the last `size` bytes, fewer than a block, of a text of `text_size`. Reads no byte
// outside the text: the last step takes the sixteen bytes that end where the text does.
template <marks_of_sixteen Look>
byte_marks marks_of_end(const char* end, std::size_t size, std::size_t text_size) {
  const char* const at = end - size;
  byte_marks marks;
  std::size_t place = 0;
  for (; size - place >= 16; place += 16) marks |= Look(at + place) << place;
  const std::size_t rest = size - place;
  if (rest > 0 && text_size >= 16) return marks |= Look(end - 16) >> (16 - rest) << place;
  for (; place < size; ++place) {
    const bool is_quote = at[place] == '"';
    marks |= byte_marks{is_quote, !is_quote && interrupts_text(at[place])} << place;
  }
  return marks;
}

// Which of the others are backslashes.
inline std::uint64_t backslashes_among(std::uint64_t others, const char* at) {
  std::uint64_t backslashes = 0;
  for (; others != 0; others &= others - 1) {
    if (at[__builtin_ctzll(others)] == '\\') backslashes |= others & (0 - others);
  }
  return backslashes;
}
