// The password manager's settings as named texts. The host renders them and gives them no meaning.
#pragma once

#include <cstdint>

#include "messages/name.h"
#include "messages/text_map.h"

// What CfSettings::dump hands its pairs to; null where nobody shows them. The host sets it at its
// start, so that neither the bags nor a library that uses them know the diagnostics.
extern void (*settings_dump)(const text_map& pairs, const wide_char* prefix);

// Unique keys, case-sensitive, in the order of text_map; no empty ones. Not a propsW_t: it differs
// in its operations. Keys and values on this interface are terminated wide strings. The order of
// the virtual functions is part of the interface to the client library. No lock: a bag belongs to
// one message or record, which doesn't change once it has been handed over.
class CfSettings {
 public:
  class const_iterator;

  CfSettings() = default;
  CfSettings(const CfSettings&) = delete;
  CfSettings& operator=(const CfSettings&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Makes this bag a copy of `other`. Its own pairs go first, so that of itself nothing is left.
  virtual void assign(const CfSettings& other);

  // Lays all pairs of `other` over this bag's.
  virtual void merge(const CfSettings& other);

  // Frees a bag that was made with new.
  virtual void destroy();

  // Stores the class's name and gives `result`, as iCfMsg does.
  virtual cfName* nameInto(cfName* result) const;
  cfName name() const {
    cfName result(nullptr);
    nameInto(&result);
    return result;
  }

  virtual void clear();

  // False, and no change, for a null or empty key. A null value removes the pair, if there is one.
  virtual bool set(const wide_char* key, const wide_char* value);

  // Gives the key the empty string. False for a null or empty key.
  virtual bool setEmpty(const wide_char* key);

  // The value, good until that pair is changed or removed, or null.
  virtual const wide_char* get(const wide_char* key) const;

  virtual std::uint64_t size() const;

  // The pairs, for reading. Two entries of the table do the same.
  virtual const text_map& map();
  virtual const text_map& map() const;

  // Hands the pairs to settings_dump, with `prefix`, which may be null.
  virtual void dump(const wide_char* prefix) const;

 protected:
  // Enters a pair whatever `set` of a derived class does.
  void enter(wide_view key, wide_view value) { map_.set(key, value); }

 private:
  friend struct message_layout;

  text_map map_;
};

// A bag that is born with the sixteen defaults and refuses changes by `set`.
class CfDummySettings final : public CfSettings {
 public:
  CfDummySettings();
  void* deletingDestructor(std::uint32_t flags) override;
  cfName* nameInto(cfName* result) const override;
  bool set(const wide_char* key, const wide_char* value) override;
};

// Cursor over a map; the map may not change while it is used.
class CfSettings::const_iterator {
 public:
  explicit const_iterator(const text_map& map) : map_(map), position_(map.begin()) {}
  const_iterator(const const_iterator&) = delete;
  const_iterator& operator=(const const_iterator&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  // Frees a cursor that was made with new.
  virtual void destroy();

  // Move, and give the new position; at the end toNext stays.
  virtual const text_map::pair* toFirst();
  virtual bool atEnd() const;
  virtual const text_map::pair* toNext();

  // Require a position before the end.
  virtual const wide_char* key() const;
  virtual const wide_char* value() const;

 private:
  friend struct message_layout;

  const text_map& map_;
  const text_map::pair* position_;
};
