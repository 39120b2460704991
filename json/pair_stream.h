// The members of one JSON container under construction, in the order written, each followed by a
// comma. Brackets come when the container is closed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class pair_stream {
 public:
  const std::string& str() const { return text_; }

  // For whoever writes into the text where it lies.
  std::string& text() { return text_; }

  pair_stream& operator<<(std::string_view text) {
    text_.append(text);
    return *this;
  }
  pair_stream& operator<<(char c) {
    text_.push_back(c);
    return *this;
  }
  // In decimal, whatever the locale.
  pair_stream& operator<<(std::int32_t value) {
    text_.append(std::to_string(value));
    return *this;
  }

 private:
  std::string text_;
};
