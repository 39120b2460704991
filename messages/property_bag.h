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

  // Enters a pair whose key is new; false if it isn't.
  virtual bool add(const wide_char* key, const wide_char* value);

  // Lays all pairs of `other` over this bag's.
  virtual void merge(const propsW_t& other);

  // Makes this bag a copy of `other`. Its own pairs go first, so that of itself nothing is left.
  virtual void assign(const propsW_t& other);

  virtual void clear();

  // True if the key was there and has been removed.
  virtual bool erase(const wide_char* key);
  virtual bool has(const wide_char* key) const;

  // False, and no change, for a null key, and for a key that is there unless `overwrite` is true. A
  // null value means the empty string.
  virtual bool set(const wide_char* key, const wide_char* value, bool overwrite);

  // `set` with overwriting, for texts of known length that hold no zero unit.
  void put(wide_view key, wide_view value) { map_.set(key, value); }

  // The way to fill an empty bag without a search or a copy; text_map tells the rules.
  text_map::filler fill(std::size_t pairs, std::size_t units) { return {map_, pairs, units}; }

  // The value, good until that pair is changed or erased, or exactly `fallback`, which may be null.
  virtual const wide_char* get(const wide_char* key, const wide_char* fallback) const;

  // The pairs, for reading. Two entries of the table do the same.
  virtual const text_map& map();
  virtual const text_map& map() const;

 private:
  friend bool readBag(cfIStream& stream, propsW_t& bag);
  friend struct message_layout;

  text_map map_;
};

// Cursor over a map; the map may not change while it is used.
class propsW_t::const_iterator {
 public:
  explicit const_iterator(const text_map& map) : map_(map), position_(map.begin()) {}
  const_iterator(const const_iterator&) = delete;
  const_iterator& operator=(const const_iterator&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Require a position before the end.
  virtual const wide_char* key() const;
  virtual const wide_char* value() const;

  // Move, and give the new position; at the end toNext stays.
  virtual const text_map::pair* toFirst();
  virtual bool atEnd() const;
  virtual const text_map::pair* toNext();

 private:
  friend struct message_layout;

  const text_map& map_;
  const text_map::pair* position_;
};

// The block in which a bag travels: key and value of each pair, and an empty key as end mark. A
// pair with an empty key can't travel and is left out.
void writeBag(cfOStream& stream, const propsW_t& bag);

// Lays the pairs of the next block over the bag's. A block that isn't whole leaves the pairs read
// so far, and turns the stream's `ok` false. The result is false when not even its first string is
// there.
bool readBag(cfIStream& stream, propsW_t& bag);

// Bags that a list may hold, and with it the inputs of a page; none has a use for more. Two bytes,
// an empty object in JSON or an empty block in a payload, are enough to ask for a bag, which takes
// several hundred: without a bound a message within its limits could take all memory.
constexpr std::size_t max_listed_bags = 65536;

// A list of bags: their number, then a block for each.
void writeBagList(cfOStream& stream, const std::vector<propsW_t>& list);

// Replaces the list. A number below 1, read as signed, is an empty list. Reading stops where no
// block begins any more, whatever the number says; it doesn't ask for `ok`, which may have been
// lost earlier over a field that left the position intact. More than max_listed_bags turn `ok`
// false.
void readBagList(cfIStream& stream, std::vector<propsW_t>& list);
