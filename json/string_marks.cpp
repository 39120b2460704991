#include "json/string_marks.h"

#include <algorithm>

namespace {

// For each place, whether the number of bits up to and including it is odd. If the bits are quotes,
// that means the byte lies in a string or opens one.
constexpr std::uint64_t odd_up_to(std::uint64_t bits) {
  for (int distance = 1; distance < 64; distance *= 2) bits ^= bits << distance;
  return bits;
}

// Stores the addresses of the bytes whose bits are set in `found`; the first belongs to `at`.
char** store(char** out, char* at, std::uint64_t found) {
  for (; found != 0; found &= found - 1) *out++ = at + __builtin_ctzll(found);
  return out;
}

}  // namespace

// Called about once for each kilobyte of a page.
void string_marks::look_on() {
  if (ended_) return;
  last_ = std::copy(first_, static_cast<char* const*>(last_), marks_);
  first_ = marks_;
  switch (width_) {
    case 32:
      look_at_blocks_wide();
      break;
    case 16:
      look_at_blocks<marks_by_vector>();
      break;
    default:
      look_at_blocks<marks_by_words>();
  }
}

// Backslashes come in runs, in which every second one is escaped. Adding a run's first bit carries
// beyond its end, which tells runs that begin at even places from the others.
[[gnu::noinline]] std::uint64_t string_marks::ends_among_others(byte_marks marks,
                                                                std::uint64_t backslashes) {
  constexpr std::uint64_t even = 0x5555555555555555;
  const std::uint64_t controls = marks.others & ~backslashes;
  const std::uint64_t first_escaped = escaped_ ? 1 : 0;
  backslashes &= ~first_escaped;
  const std::uint64_t run_starts = backslashes & ~(backslashes << 1);
  const std::uint64_t in_even_runs = backslashes & ~(backslashes + (run_starts & even));
  const std::uint64_t starts = (in_even_runs & even) | (backslashes & ~in_even_runs & ~even);
  escaped_ = starts >> 63 != 0;

  const std::uint64_t quotes = marks.quotes & ~(starts << 1 | first_escaped);
  const std::uint64_t quoted = odd_up_to(quotes) ^ in_string_;
  in_string_ = 0 - (quoted >> 63);
  return (quotes & ~quoted) | ((controls | starts) & quoted);
}

template <marks_of_sixteen Look>
void string_marks::look_at_blocks() {
  char* at = at_;
  char** last = last_;
  for (; wants_block(last, at); at += marked_block) {
    const byte_marks marks = marks_of_block<Look>(at);
    const auto backslashes = [&] { return backslashes_among(marks.others, at); };
    last = store(last, at, ends_among(marks, odd_up_to(marks.quotes), backslashes));
    if ((marks.quotes | marks.others) != 0) continue;
    // Within a long string.
    while (wants_block(last, at + marked_block) && is_plain_window(at + marked_block)) {
      at += marked_block;
    }
  }
  if (last - marks_ < enough) {
    const byte_marks marks = marks_of_end<Look>(end_, static_cast<std::size_t>(end_ - at),
                                                static_cast<std::size_t>(end_ - text_));
    const auto backslashes = [&] { return backslashes_among(marks.others, at); };
    last = store(last, at, ends_among(marks, odd_up_to(marks.quotes), backslashes));
    *last++ = at = end_;
    ended_ = true;
  }
  at_ = at;
  last_ = last;
}
