// Goes over JSON that somebody else has written, and writes down in strict form what it has taken.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class json_taker {
 public:
  explicit json_taker(std::string_view text) : text_(text) {}

  // NUL at the end.
  char here() const { return is_at_end() ? '\0' : text_[at_]; }
  bool is_at_end() const { return at_ == text_.size(); }
  bool starts_with(std::string_view expected) const {
    return text_.substr(at_).starts_with(expected);
  }
  std::size_t at() const { return at_; }
  std::string_view text() const { return text_; }

  // False, and nothing has changed, if something else stands there. What is skipped isn't written.
  bool take(char c);
  bool skip(std::string_view expected);

  // False if not all of it stands there.
  bool take_word(std::string_view word);

  void go_to(std::size_t offset) { at_ = offset; }
  std::string& out() { return out_; }

 private:
  const std::string_view text_;
  std::size_t at_ = 0;
  std::string out_;
};
