#include "messages/text_map.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "memory/kept_blocks.h"

namespace {

constexpr std::size_t first_pairs = 12;  // holds an input's nine, and most pages' properties

bool key_below(const text_map::pair& a, const text_map::pair& b) {
  return a.key_text() < b.key_text();
}

}  // namespace

// Header of a block; its text follows and goes on to `end`.
struct text_map::block {
  block* older;
  wide_char* end;

  wide_char* text() { return reinterpret_cast<wide_char*>(this + 1); }
  std::size_t units() { return static_cast<std::size_t>(end - text()); }

  // Units in a kept block: enough for the first pairs and the text of an input.
  static constexpr std::size_t kept_units = (kept_block_size - 16) / sizeof(wide_char);

  // Uses a kept block if it is large enough and one is at hand.
  static block* make(std::size_t units, block* older) {
    static_assert(sizeof(block) + kept_units * sizeof(wide_char) == kept_block_size);
    void* memory = units <= kept_units ? take_block_at_hand() : nullptr;
    if (memory != nullptr) {
      units = kept_units;
    } else {
      memory = ::operator new(sizeof(block) + units * sizeof(wide_char));
    }
    auto* const made = new (memory) block{older, nullptr};
    made->end = made->text() + units;
    return made;
  }

  void give_back() {
    if (units() == kept_units) {
      give_block_back(this);
    } else {
      ::operator delete(this);
    }
  }
};

const text_map::pair* text_map::find(wide_view key) const {
  const pair* const position = lower_bound(key);
  return matches(position, key) ? position : nullptr;
}

void text_map::set(wide_view key, wide_view value) {
  // Adding in key order needs no search.
  pair* const position =
      empty() || pairs_[size_ - 1].key_text() < key ? pairs_ + size_ : lower_bound(key);
  if (!matches(position, key)) {
    insert(position, make_pair(key.data(), key.size(), value.data(), value.size()));
    return;
  }
  if (value.size() > position->value_capacity) {
    // Twice the size: then all the old rooms of a growing value take no more than the value itself.
    const std::size_t capacity = 2 * value.size();
    position->value = take_room(capacity + 1);
    position->value_capacity = static_cast<std::uint32_t>(capacity);
  }
  // The room is the map's own; it is const only for readers. The new value may be part of the old
  // one. If there is no room, both values are empty.
  if (position->value_capacity > 0) {
    auto* const room = const_cast<wide_char*>(position->value);
    if (!value.empty()) std::memmove(room, value.data(), value.size() * sizeof(wide_char));
    room[value.size()] = 0;
  }
  position->value_length = static_cast<std::uint32_t>(value.size());
}

void text_map::merge(const text_map& other) {
  if (this == &other) return;
  for (const pair& p : other) set(p.key_text(), p.value_text());
}

bool text_map::erase(wide_view key) {
  pair* const position = lower_bound(key);
  if (!matches(position, key)) return false;
  std::copy(position + 1, pairs_ + size_, position);
  --size_;
  return true;
}

void text_map::clear() {
  while (newest_ != nullptr) {
    block* const older = newest_->older;
    newest_->give_back();
    newest_ = older;
  }
  pairs_ = nullptr;
  free_ = nullptr;
  size_ = capacity_ = 0;
}

text_map::pair* text_map::lower_bound(wide_view key) const {
  return std::lower_bound(pairs_, pairs_ + size_, key,
                          [](const pair& p, wide_view k) { return p.key_text() < k; });
}

bool text_map::matches(const pair* position, wide_view key) const {
  return position != pairs_ + size_ && position->key_text() == key;
}

// Copies both texts, which may lie at odd addresses, into one room.
text_map::pair text_map::make_pair(const void* key, std::size_t key_length, const void* value,
                                   std::size_t value_length) {
  wide_char* const key_room = take_room(key_length + value_length + 2);
  wide_char* const value_room = key_room + key_length + 1;
  if (key_length > 0) std::memcpy(key_room, key, key_length * sizeof(wide_char));
  if (value_length > 0) std::memcpy(value_room, value, value_length * sizeof(wide_char));
  key_room[key_length] = 0;
  value_room[value_length] = 0;
  const auto capacity = static_cast<std::uint32_t>(value_length);
  return {key_room, value_room, static_cast<std::uint32_t>(key_length), capacity, capacity};
}

void text_map::insert(pair* position, const pair& added) {
  const std::size_t index = static_cast<std::size_t>(position - pairs_);
  reserve(size_ + std::size_t{1});
  std::copy_backward(pairs_ + index, pairs_ + size_, pairs_ + size_ + 1);
  pairs_[index] = added;
  ++size_;
}

// The old array stays in its block until the map is cleared.
void text_map::reserve(std::size_t count) {
  if (count <= capacity_) return;
  const std::size_t capacity = std::max({count, first_pairs, std::size_t{2} * capacity_});
  pair* const larger = take_pairs(capacity);
  std::copy(pairs_, pairs_ + size_, larger);
  pairs_ = larger;
  capacity_ = static_cast<std::uint32_t>(capacity);
}

text_map::pair* text_map::take_pairs(std::size_t count) {
  constexpr std::size_t misfit = alignof(pair) / sizeof(wide_char) - 1;
  const std::size_t size = count * sizeof(pair);
  std::size_t room_size = size + misfit * sizeof(wide_char);
  void* room = take_room(room_size / sizeof(wide_char));
  return static_cast<pair*>(std::align(alignof(pair), size, room, room_size));
}

void text_map::add_block(std::size_t units) {
  newest_ = block::make(units, newest_);
  free_ = newest_->text();
}

wide_char* text_map::take_room(std::size_t units) {
  if (newest_ == nullptr || static_cast<std::size_t>(newest_->end - free_) < units) {
    const std::size_t least = newest_ == nullptr ? block::kept_units : 2 * newest_->units();
    add_block(std::max(units, least));
  }
  wide_char* const room = free_;
  free_ += units;
  return room;
}

void text_map::assign(const text_map& other) {
  clear();
  reserve(other.size_);
  for (const pair& p : other) {
    insert(pairs_ + size_, make_pair(p.key, p.key_length, p.value, p.value_length));
  }
}

void text_map::swap(text_map& other) noexcept {
  std::swap(pairs_, other.pairs_);
  std::swap(size_, other.size_);
  std::swap(capacity_, other.capacity_);
  std::swap(newest_, other.newest_);
  std::swap(free_, other.free_);
}

void text_map::batch::add(const payload_text& key, const payload_text& value) {
  const pair added = map_.make_pair(key.bytes, key.length, value.bytes, value.length);
  map_.reserve(map_.size_ + std::size_t{1});
  ordered_ = ordered_ && (map_.empty() || key_below(map_.pairs_[map_.size_ - 1], added));
  map_.pairs_[map_.size_++] = added;
}

text_map::batch::~batch() {
  if (ordered_) return;
  pair* const first = map_.pairs_;
  pair* const end = first + map_.size_;
  std::stable_sort(first, end, key_below);
  pair* kept = first;
  for (const pair* at = first; at != end; ++at) {
    const bool replaced = at + 1 != end && !key_below(at[0], at[1]);
    if (!replaced) *kept++ = *at;
  }
  map_.size_ = static_cast<std::uint32_t>(kept - first);
}

text_map::filler::filler(text_map& map, std::size_t pairs, std::size_t units) : map_(map) {
  constexpr std::size_t pair_units = sizeof(pair) / sizeof(wide_char);
  map.add_block(pairs * pair_units + units);
  // A new block starts at an address that suits pairs.
  map.pairs_ = reinterpret_cast<pair*>(map.take_room(pairs * pair_units));
  map.capacity_ = static_cast<std::uint32_t>(pairs);
}
