// Finds the bytes that interrupt the strings of one JSON text. Most of the time of a parse goes
// into this search.
#pragma once

#include <cstddef>
#include <cstdint>

#include "json/plain_text.h"

// Goes through a text from front to back and looks at 64 bytes at once. Strings are short, so what
// was seen of the following ones is kept, and the search in them needn't wait for memory.
class text_scan {
 public:
  // `end` is the NUL at the end of the text.
  text_scan(const char* text, const char* end) : text_(text), end_(end), window_(text) { look(); }

  // The first interrupting byte from `at` on, the NUL at the latest. `at` may not lie before the
  // result of an earlier call, and no byte from there on may have been changed.
  [[gnu::always_inline]] char* find(char* at) {
    const std::ptrdiff_t offset = at - window_;
    if (offset < window_size) {
      const std::uint64_t found = bits_ >> offset;
      if (found != 0) return at + __builtin_ctzll(found);
      at += window_size - offset;
    }
    return find_beyond(at);
  }

 private:
  static constexpr std::ptrdiff_t window_size = 64;

  // The same for an `at` outside the window. Envelopes hold strings of many windows.
  [[gnu::noinline]] char* find_beyond(char* at) {
    for (;; at += window_size) {
      window_ = at;
      look();
      if (bits_ != 0) return at + __builtin_ctzll(bits_);
      while (end_ - at >= 2 * window_size && is_plain_window(at + window_size)) at += window_size;
    }
  }

  void look() {
    if (end_ - window_ >= window_size - 1) {
      bits_ = bits_of(window_, 0) | bits_of(window_ + 16, 16) | bits_of(window_ + 32, 32) |
              bits_of(window_ + 48, 48);
    } else {
      bits_ = look_at_rest();
    }
  }

  // Nothing after the NUL is read: the last block is one that ends there.
  std::uint64_t look_at_rest() const {
    std::uint64_t bits = 0;
    unsigned place = 0;
    const char* block = window_;
    for (; end_ - block >= 15; block += 16, place += 16) bits |= bits_of(block, place);
    if (block > end_) return bits;
    if (end_ - text_ >= 15) {
      const char* const last = end_ - 15;
      return bits | bits_of(last, 0) >> (block - last) << place;
    }
    for (; block <= end_; ++block, ++place) {
      if (interrupts_text(*block)) bits |= std::uint64_t{1} << place;
    }
    return bits;
  }

  static std::uint64_t bits_of(const char* block, unsigned place) {
    return std::uint64_t{interrupting_bits(block)} << place;
  }

  const char* const text_;
  const char* const end_;
  const char* window_;  // the bytes that `bits_` describes, the first one lowest
  std::uint64_t bits_;
};
