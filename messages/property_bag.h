// The property bag: the one general container of the message model. A page has one for itself and
// one for each form input.
#pragma once

#include <cstdint>
#include <vector>

#include "messages/streams.h"
#include "messages/text_map.h"

// Unique keys, case-sensitive, in the order of text_map; values are opaque text. All keys and
// values on this interface are terminated wide strings. The order of the virtual functions is part
// of the interface to the client library. A bag has no lock: one thread fills it before it is
// handed over.
class propsW_t final {
 public:
  class const_iterator;

  propsW_t() = default;
  propsW_t(const propsW_t&) = default;
  propsW_t(propsW_t&&) noexcept = default;
  propsW_t& operator=(const propsW_t&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Frees a bag that was made with new.
  virtual void destroy();

  virtual bool empty() const;
  virtual std::uint64_t size() const;

  // Adds a pair if its key is new; otherwise returns false.
  virtual bool add(const wide_char* key, const wide_char* value);

  // Sets all pairs of `other` in this bag.
  virtual void merge(const propsW_t& other);

  // Makes this bag a copy of `other`. Its own pairs go first, so assigning it to itself empties it.
  virtual void assign(const propsW_t& other);

  virtual void clear();

  // True if the key was there and has been removed.
  virtual bool erase(const wide_char* key);
  virtual bool has(const wide_char* key) const;

  // False, with no change, for a null key, or for an existing key unless `overwrite` is true. A
  // null value means the empty string.
  virtual bool set(const wide_char* key, const wide_char* value, bool overwrite);

  // `set` with overwriting, for texts of known length that hold no zero unit.
  void put(wide_view key, wide_view value) { map_.set(key, value); }

  // Fills an empty bag without a search or a copy; text_map has the rules.
  text_map::filler fill(std::size_t pairs, std::size_t units) { return {map_, pairs, units}; }

  // The value, valid until that pair is changed or erased, or exactly `fallback`, which may be
  // null.
  virtual const wide_char* get(const wide_char* key, const wide_char* fallback) const;

  // The pairs, for reading. Two entries of the table do the same.
  virtual const text_map& map();
  virtual const text_map& map() const;

 private:
  friend bool readBag(cfIStream& stream, propsW_t& bag);
  friend struct message_layout;

  text_map map_;
};

// Cursor over a map; the map may not change while the cursor is used.
class propsW_t::const_iterator {
 public:
  explicit const_iterator(const text_map& map) : map_(map), position_(map.begin()) {}
  const_iterator(const const_iterator&) = delete;
  const_iterator& operator=(const const_iterator&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // The position must be before the end.
  virtual const wide_char* key() const;
  virtual const wide_char* value() const;

  // Move, and return the new position; at the end toNext stays.
  virtual const text_map::pair* toFirst();
  virtual bool atEnd() const;
  virtual const text_map::pair* toNext();

 private:
  friend struct message_layout;

  const text_map& map_;
  const text_map::pair* position_;
};

// A bag travels as a block: key and value of each pair, then an empty key as the end mark. A pair
// with an empty key can't travel and is left out.
void writeBag(cfOStream& stream, const propsW_t& bag);

// Sets the pairs of the next block in the bag. A block that isn't whole leaves the pairs read so
// far and sets the stream's `ok` to false. The result is false if not even the block's first string
// is there.
bool readBag(cfIStream& stream, propsW_t& bag);

// The most bags that a list may hold, and so the most inputs of a page; nothing needs more. Two
// bytes, an empty object in JSON or an empty block in a payload, are enough to ask for a bag, which
// takes several hundred bytes: without a bound a message within its limits could take all memory.
constexpr std::size_t max_listed_bags = 65536;

// A list of bags: their number, then a block for each.
void writeBagList(cfOStream& stream, const std::vector<propsW_t>& list);

// Replaces the list. A number below 1, read as signed, means an empty list. Reading stops where no
// further block begins, whatever the number says. It doesn't depend on `ok`, which an earlier field
// may have cleared without losing the position. More than max_listed_bags set `ok` to false.
void readBagList(cfIStream& stream, std::vector<propsW_t>& list);
