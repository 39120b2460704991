// Where the strings of a JSON text end or need closer examination. The text is scanned in blocks,
// ahead of the parser: strings are so short that a parser that searched for the end of each would
// mostly wait for the result.
#pragma once

#include <cstddef>
#include <cstdint>

#include "json/byte_marks.h"

// How many bytes this processor can examine with one instruction: 32, 16, or 0 if it has no
// vectors.
extern const int string_marks_width;

// A mark is a closing quote, a backslash that starts an escape, or a control character in a string;
// the last mark is the end of the text. Opening quotes are not marked. Counting tells opening
// quotes from closing ones, which is right up to the first error in the text.
class string_marks {
 public:
  // `end` is the NUL after the text. The text before a mark that was taken may be overwritten.
  // `width` may be at most string_marks_width.
  string_marks(char* text, char* end, int width)
      : text_(text), end_(end), width_(width), at_(text), first_(marks_), last_(marks_) {}
  string_marks(const string_marks&) = delete;
  string_marks& operator=(const string_marks&) = delete;

  // The marks found so far and not taken, in the order of the text.
  char* const* begin() const { return first_; }
  char* const* end() const { return last_; }

  // Takes all marks before this one.
  void take_to(char* const* mark) { first_ = mark; }

  // Scans on for more marks, unless the end was reached.
  void look_on();

  // Takes the next mark. May not be called after it returned the end of the text.
  char* take() {
    if (first_ == last_) look_on();
    return *first_++;
  }

 private:
  // With this many marks found, no further block is scanned.
  static constexpr std::ptrdiff_t enough = 64;

  template <marks_of_sixteen Look>
  void look_at_blocks();
  void look_at_blocks_wide();
  bool wants_block(char* const* last, const char* at) const {
    return last - marks_ < enough && end_ - at >= marked_block;
  }
  template <class Backslashes>
  std::uint64_t ends_among(byte_marks marks, std::uint64_t quoted, Backslashes backslashes);
  std::uint64_t ends_among_others(byte_marks marks, std::uint64_t backslashes);

  const char* const text_;
  char* const end_;
  const int width_;
  char* at_;                     // the first byte that wasn't scanned
  std::uint64_t in_string_ = 0;  // all ones if it lies in a string
  bool escaped_ = false;         // whether a backslash escapes it
  bool ended_ = false;           // whether the last mark was found
  char* const* first_;
  char** last_;
  char* marks_[enough + marked_block];
};

// The marks of a block. `quoted` is odd_up_to of the block's quotes. Strings with escapes are the
// exception, so `backslashes` is called only for them.
template <class Backslashes>
[[gnu::always_inline]] inline std::uint64_t string_marks::ends_among(byte_marks marks,
                                                                     std::uint64_t quoted,
                                                                     Backslashes backslashes) {
  if (marks.others != 0 || escaped_) return ends_among_others(marks, backslashes());
  quoted ^= in_string_;
  in_string_ = 0 - (quoted >> 63);
  return marks.quotes & ~quoted;
}
