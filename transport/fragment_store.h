// Keeps the text of unfinished messages by id, within limits.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

// What a store keeps at most; each is at least 1.
struct fragment_bounds {
  // Text over all ids, in bytes. Far more than any page needs, and far below what the 32-bit
  // lengths of the codecs can count.
  std::size_t text = std::size_t{64} * 1024 * 1024;

  // Unfinished messages; this bounds what ids without text can take. The same number of dropped
  // messages is remembered, by their ids alone.
  std::size_t messages = 4096;
};

// A message that no longer fits is dropped as a whole. What comes of it later, up to its closing
// piece, is refused; otherwise its end would be taken for a message of its own.
class fragment_store {
 public:
  explicit fragment_store(fragment_bounds bounds = {}) : bounds_(bounds) {}

  // Adds a piece to the message of `id`, or begins that message. Makes room by dropping the
  // messages that were untouched longest. False if this message is dropped: the piece can't fit, or
  // an earlier one didn't.
  bool append(const std::string& id, std::string_view piece);

  // Whether `id` has a message, a dropped one included.
  bool contains(const std::string& id) const { return entries_.count(id) != 0; }

  // Ends the message of `id`, which must be there, and returns its text; nothing if it was dropped.
  std::optional<std::string> take(const std::string& id);

  // Text held at the moment, in bytes.
  std::size_t text_size() const { return text_size_; }

 private:
  // Ids of entries, the one touched last at the end. The strings belong to the map, whose elements
  // stay where they are.
  using touch_order = std::list<const std::string*>;
  struct entry {
    std::string text;
    touch_order::iterator touched;
    bool dropped = false;
  };
  using entries = std::unordered_map<std::string, entry>;

  entries::iterator touch(const std::string& id);
  void drop(entry& e);
  void erase(entries::iterator position);

  fragment_bounds bounds_;
  entries entries_;
  touch_order kept_;
  touch_order dropped_;
  std::size_t text_size_ = 0;
};
