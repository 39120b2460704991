// The text of unfinished messages by id, within the limits of reassembly.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

class fragment_store {
 public:
  fragment_store() = default;
  ~fragment_store();
  fragment_store(const fragment_store&) = delete;
  fragment_store& operator=(const fragment_store&) = delete;

  // Adds a piece to the message of `id`, which begins with it if it is new. False when the piece
  // can't fit; then the message of `id` is gone.
  bool append(const std::string& id, std::string_view piece);

  // Ends the message of `id`, which must be there, and gives its text.
  std::string take(const std::string& id);

  // Text held by all stores of the process, in bytes.
  static std::size_t text_size() { return text_size_; }

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
  static std::size_t text_size_;
};
