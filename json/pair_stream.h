// The members of one JSON container that is being written, in order, each followed by a comma.
// Brackets are added when the container is closed.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

// A text that grows at its end. Unlike std::string it provides room without clearing it first.
class pair_stream {
 public:
  // Valid until something is added.
  std::string_view str() const { return {text_.get(), size_}; }

  // Room for the next `size` bytes. They become part of the text by `keep`.
  char* room(std::size_t size) {
    if (text_ == nullptr || size > capacity_ - size_) grow(size);
    return text_.get() + size_;
  }

  // Makes the first `size` bytes of the room part of the text.
  void keep(std::size_t size) { size_ += size; }

  // Removes the last byte if it is this one.
  void drop_last(char c) {
    if (size_ > 0 && text_[size_ - 1] == c) --size_;
  }

  pair_stream& operator<<(std::string_view text) {
    if (!text.empty()) std::memcpy(room(text.size()), text.data(), text.size());
    keep(text.size());
    return *this;
  }
  pair_stream& operator<<(char c) {
    *room(1) = c;
    keep(1);
    return *this;
  }
  // In decimal, whatever the locale.
  pair_stream& operator<<(std::int32_t value) { return *this << std::to_string(value); }

 private:
  // Enough for most notifications about a page with one input.
  static constexpr std::size_t first_capacity = 1000;

  void grow(std::size_t size) {
    const std::size_t capacity = std::max({first_capacity, 2 * capacity_, size_ + size});
    std::unique_ptr<char[]> larger(new char[capacity]);
    if (size_ > 0) std::memcpy(larger.get(), text_.get(), size_);
    text_ = std::move(larger);
    capacity_ = capacity;
  }

  std::unique_ptr<char[]> text_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};
