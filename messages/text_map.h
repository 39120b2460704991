// An ordered map from wide key to wide value, made for bags: a dozen pairs, filled once and walked
// in key order. The pairs lie in key order in one array. The array and the texts lie in blocks of
// memory that never move; one block is usually enough.
//
// Keys compare by UTF-16 code unit as unsigned numbers, so surrogates sort before U+E000 and
// capitals before small letters. A pointer to a key or value stays valid until that pair is changed
// or erased, whatever else is added. Memory of erased pairs is freed when the map is cleared or
// destroyed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "messages/streams.h"
#include "platform/wide.h"

class text_map {
 public:
  // One pair; both texts are terminated and hold no zero unit. A value without capacity is empty
  // and may be a constant, as keys may.
  struct pair {
    const wide_char* key;
    const wide_char* value;
    std::uint32_t key_length;
    std::uint32_t value_length;
    std::uint32_t value_capacity;

    wide_view key_text() const { return {key, key_length}; }
    wide_view value_text() const { return {value, value_length}; }
  };
  class batch;
  class filler;

  text_map() = default;
  ~text_map() { clear(); }
  text_map(const text_map& other) { assign(other); }
  text_map(text_map&& other) noexcept { swap(other); }
  text_map& operator=(const text_map& other) {
    if (this != &other) assign(other);
    return *this;
  }
  text_map& operator=(text_map&& other) noexcept {
    swap(other);
    return *this;
  }

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  // The pairs in key order.
  const pair* begin() const { return pairs_; }
  const pair* end() const { return pairs_ + size_; }

  // The pair of a key, or null.
  const pair* find(wide_view key) const;

  // Adds the pair, or replaces the value of an existing key.
  void set(wide_view key, wide_view value);

  // Sets copies of all pairs of `other` in this map.
  void merge(const text_map& other);

  // True if the key was there.
  bool erase(wide_view key);

  void clear();

 private:
  friend struct message_layout;
  struct block;

  pair* lower_bound(wide_view key) const;
  bool matches(const pair* position, wide_view key) const;
  pair make_pair(const void* key, std::size_t key_length, const void* value,
                 std::size_t value_length);
  void insert(pair* position, const pair& added);
  void reserve(std::size_t count);
  pair* take_pairs(std::size_t count);
  void add_block(std::size_t units);
  wide_char* take_room(std::size_t units);
  void assign(const text_map& other);
  void swap(text_map& other) noexcept;

  // A reader on the other side of the interface sees the map by these two.
  pair* pairs_ = nullptr;
  std::uint32_t size_ = 0;

  std::uint32_t capacity_ = 0;
  block* newest_ = nullptr;
  wide_char* free_ = nullptr;  // first unused unit of the newest block
};

// Adds many pairs in any order, in O(n log n). Of equal keys the last one wins, even over a pair
// that the map held before. The map may not be used while a batch is open on it.
class text_map::batch {
 public:
  explicit batch(text_map& map) : map_(map) {}
  ~batch();
  batch(const batch&) = delete;
  batch& operator=(const batch&) = delete;

  void add(const payload_text& key, const payload_text& value);

 private:
  text_map& map_;
  bool ordered_ = true;  // each key so far is above the one before it
};

// Fills an empty map in key order. Keys are constants of the program; values are made in the map's
// own memory. Until the last `add`, nothing else may change the map.
class text_map::filler {
 public:
  // Allocates memory for `pairs` pairs, and for values of `units` in all, terminators included. No
  // more than that may be kept and added.
  filler(text_map& map, std::size_t pairs, std::size_t units);
  filler(const filler&) = delete;
  filler& operator=(const filler&) = delete;

  // Where the next value is made.
  wide_char* room() { return map_.free_; }

  // The first units of the room as a value, which stays where it is.
  wide_view keep(std::size_t units) {
    wide_char* const text = map_.free_;
    text[units] = 0;
    map_.free_ += units + 1;
    return {text, units};
  }

  // The key must be above all before it, and the value empty or a result of `keep`.
  void add(wide_view key, wide_view value) {
    const auto length = static_cast<std::uint32_t>(value.size());
    map_.pairs_[map_.size_++] = {key.data(), value.empty() ? u"" : value.data(),
                                 static_cast<std::uint32_t>(key.size()), length, length};
  }

 private:
  text_map& map_;
};
