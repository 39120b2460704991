// The text of unfinished messages by id, within limits.
#pragma once

#include <cstddef>
#include <list>
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

  bool contains(const std::string& id) const { return entries_.count(id) != 0; }

  // Ends the message of `id`, which must be there, and gives its text.
  std::string take(const std::string& id);

  // Text held at the moment, in bytes.
  std::size_t text_size() const { return text_size_; }

 private:
  // The ids of entries in the order in which they were touched, the last one at the end. The names
  // belong to the map, whose elements stay where they are.
  using touch_order = std::list<const std::string*>;
  struct entry {
    std::string text;
    touch_order::iterator touched;
  };
  using entries = std::unordered_map<std::string, entry>;

  entries::iterator touch(const std::string& id);
  void erase(entries::iterator position);

  entries entries_;
  touch_order order_;
  std::size_t text_size_ = 0;
};
