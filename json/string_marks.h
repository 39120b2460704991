// Where the strings of one JSON text end or need a closer look. The text is looked at in blocks,
// ahead of the parser: its strings are too short to wait for the end of each before the next.
#pragma once

#include <cstddef>
#include <cstdint>

#include "json/byte_marks.h"

// How many bytes the processor at hand can look at with one instruction: 32, 16 or, for none, 0.
extern const int string_marks_width;

// A mark is a closing quote, a backslash that starts an escape, or a control character in a string,
// and last the end of the text. An opening quote is none. Which quotes open a string and which
// close one is told by counting, and right as far as the text has no error: there each quote
// outside of a string opens one.
class string_marks {
 public:
  // `end` is a NUL behind the text. What lies before a mark that was taken may be rewritten.
  // `width` may be at most string_marks_width.
  string_marks(char* text, char* end, int width)
      : text_(text), end_(end), width_(width), at_(text), first_(marks_), last_(marks_) {}
  string_marks(const string_marks&) = delete;
  string_marks& operator=(const string_marks&) = delete;

  // The marks at hand, in the order of the text.
  char* const* begin() const { return first_; }
  char* const* end() const { return last_; }

  // Takes the marks before this one of those at hand.
  void take_to(char* const* mark) { first_ = mark; }

  // Looks for more of them, if there are any.
  void look_on();

  // Takes the next mark. Not called again behind the end of the text.
  char* take() {
    if (first_ == last_) look_on();
    return *first_++;
  }

 private:
  // No further block is looked at with so many marks at hand.
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
  char* at_;                     // the first byte that wasn't looked at
  std::uint64_t in_string_ = 0;  // all ones if it lies in a string
  bool escaped_ = false;         // whether a backslash escapes it
  bool ended_ = false;           // whether the last mark was found
  char* const* first_;
  char** last_;
  char* marks_[enough + marked_block];
};

// Of the strings that end in a block, and of what else they hold. `quoted` is odd_up_to of the
// block's quotes. A string with escapes is the exception: only then backslashes are asked for.
template <class Backslashes>
[[gnu::always_inline]] inline std::uint64_t string_marks::ends_among(byte_marks marks,
                                                                     std::uint64_t quoted,
                                                                     Backslashes backslashes) {
  if (marks.others != 0 || escaped_) return ends_among_others(marks, backslashes());
  quoted ^= in_string_;
  in_string_ = 0 - (quoted >> 63);
  return marks.quotes & ~quoted;
}
