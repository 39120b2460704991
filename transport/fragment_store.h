// The text of unfinished messages by id, within limits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

// Text of unfinished messages that is kept, in bytes over all ids. Far more than any page needs,
// and far below what the 32-bit lengths of the codecs can count.
constexpr std::size_t max_gathered_text = std::size_t{64} * 1024 * 1024;

// Unfinished messages that are kept: bounds what ids without text can take.
constexpr std::size_t max_unfinished_messages = 4096;

class fragment_store {
 public:
  // Adds a piece to the message of `id`, which begins with it if it is new. False when the piece
  // can't fit; then the message of `id` is gone.
  bool append(const std::string& id, std::string_view piece);

  // Ends the message of `id`, which must be there, and gives its text.
  std::string take(const std::string& id);

  // Text held at the moment, in bytes.
  std::size_t text_size() const { return text_size_; }

 private:
  struct entry {
    std::string text;
    std::uint64_t touched = 0;
  };
  using entries = std::unordered_map<std::string, entry>;

  void make_room(const std::string& id, std::size_t piece_size);
  void erase(entries::iterator position);

  entries entries_;
  std::uint64_t clock_ = 0;  // counts pieces; the order in which entries were touched
  std::size_t text_size_ = 0;
};
