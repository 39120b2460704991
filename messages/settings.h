// The password manager's settings as named texts. The host renders them without interpreting them.
#pragma once

#include <cstdint>

#include "messages/name.h"
#include "messages/text_map.h"

// Receives the pairs of CfSettings::dump; null if nobody shows them. The host sets it at start, so
// that neither the bags nor a library that uses them depend on the diagnostics.
extern void (*settings_dump)(const text_map& pairs, const wide_char* prefix);

// Unique keys, case-sensitive, in the order of text_map; no empty ones. Not a propsW_t, whose
// operations differ. Keys and values on this interface are terminated wide strings. The order of
// the virtual functions is part of the interface to the client library. There is no lock: a bag
// belongs to one message or record, which doesn't change once it has been handed over.
class CfSettings {
 public:
  class const_iterator;

  CfSettings() = default;
  CfSettings(const CfSettings&) = delete;
  CfSettings& operator=(const CfSettings&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Makes this bag a copy of `other`. Its own pairs go first, so assigning it to itself empties it.
  virtual void assign(const CfSettings& other);

  // Sets all pairs of `other` in this bag.
  virtual void merge(const CfSettings& other);

  // Frees a bag that was made with new.
  virtual void destroy();

  // Stores the class's name and returns `result`, like iCfMsg.
  virtual cfName* nameInto(cfName* result) const;
  cfName name() const {
    cfName result(nullptr);
    nameInto(&result);
    return result;
  }

  virtual void clear();

  // False, with no change, for a null or empty key. A null value removes the pair, if there is one.
  virtual bool set(const wide_char* key, const wide_char* value);

  // Sets the value of the key to the empty string. False for a null or empty key.
  virtual bool setEmpty(const wide_char* key);

  // The value, valid until that pair is changed or removed, or null.
  virtual const wide_char* get(const wide_char* key) const;

  virtual std::uint64_t size() const;

  // The pairs, for reading. Two entries of the table do the same.
  virtual const text_map& map();
  virtual const text_map& map() const;

  // Passes the pairs, and `prefix`, which may be null, to settings_dump.
  virtual void dump(const wide_char* prefix) const;

 protected:
  // Stores a pair even if a derived class's `set` refuses changes.
  void enter(wide_view key, wide_view value) { map_.set(key, value); }

 private:
  friend struct message_layout;

  text_map map_;
};

// A bag that starts with the sixteen defaults and refuses changes by `set`.
class CfDummySettings final : public CfSettings {
 public:
  CfDummySettings();
  void* deletingDestructor(std::uint32_t flags) override;
  cfName* nameInto(cfName* result) const override;
  bool set(const wide_char* key, const wide_char* value) override;
};

// Cursor over a map; the map may not change while the cursor is used.
class CfSettings::const_iterator {
 public:
  explicit const_iterator(const text_map& map) : map_(map), position_(map.begin()) {}
  const_iterator(const const_iterator&) = delete;
  const_iterator& operator=(const const_iterator&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Frees a cursor that was made with new.
  virtual void destroy();

  // Move, and return the new position; at the end toNext stays.
  virtual const text_map::pair* toFirst();
  virtual bool atEnd() const;
  virtual const text_map::pair* toNext();

  // The position must be before the end.
  virtual const wide_char* key() const;
  virtual const wide_char* value() const;

 private:
  friend struct message_layout;

  const text_map& map_;
  const text_map::pair* position_;
};
