#include "messages/property_bag.h"

#include <algorithm>

#include "messages/deleting_destructor.h"

namespace {

// The count that a list gives, unless the rest of the payload can't hold that many.
std::size_t likely_count(std::int32_t named, std::size_t bytes_left) {
  const std::size_t possible = std::min(max_listed_bags, bytes_left / sizeof(wide_char));
  return std::min(static_cast<std::size_t>(named), possible);
}

}  // namespace

void* propsW_t::deletingDestructor(std::uint32_t flags) { return destroy_by_flags(this, flags); }

void propsW_t::destroy() { deletingDestructor(free_memory); }

bool propsW_t::empty() const { return map_.empty(); }

std::uint64_t propsW_t::size() const { return map_.size(); }

bool propsW_t::add(const wide_char* key, const wide_char* value) { return set(key, value, false); }

void propsW_t::merge(const propsW_t& other) {
  if (this == &other) return;
  for (const text_map::pair& p : other.map()) set(p.key, p.value, true);
}

void propsW_t::assign(const propsW_t& other) {
  clear();
  merge(other);
}

void propsW_t::clear() { map_.clear(); }

bool propsW_t::erase(const wide_char* key) { return key != nullptr && map_.erase(key); }

bool propsW_t::has(const wide_char* key) const {
  return key != nullptr && map_.find(key) != nullptr;
}

bool propsW_t::set(const wide_char* key, const wide_char* value, bool overwrite) {
  if (key == nullptr || (!overwrite && has(key))) return false;
  map_.set(key, value == nullptr ? wide_view() : wide_view(value));
  return true;
}

const wide_char* propsW_t::get(const wide_char* key, const wide_char* fallback) const {
  const text_map::pair* const found = key == nullptr ? nullptr : map_.find(key);
  return found == nullptr ? fallback : found->value;
}

const text_map& propsW_t::map() { return map_; }

const text_map& propsW_t::map() const { return map_; }

void* propsW_t::const_iterator::deletingDestructor(std::uint32_t flags) {
  return destroy_by_flags(this, flags);
}

const wide_char* propsW_t::const_iterator::key() const { return position_->key; }

const wide_char* propsW_t::const_iterator::value() const { return position_->value; }

const text_map::pair* propsW_t::const_iterator::toFirst() { return position_ = map_.begin(); }

bool propsW_t::const_iterator::atEnd() const { return position_ == map_.end(); }

const text_map::pair* propsW_t::const_iterator::toNext() {
  if (!atEnd()) ++position_;
  return position_;
}

void writeBag(cfOStream& stream, const propsW_t& bag) {
  for (const text_map::pair& p : bag.map()) {
    if (p.key_length == 0) continue;
    stream.putWide(p.key_text());
    stream.putWide(p.value_text());
  }
  stream.putWide(u"");
}

bool readBag(cfIStream& stream, propsW_t& bag) {
  text_map::batch batch(bag.map_);
  payload_text key = stream.readWide();
  const bool present = static_cast<bool>(key);
  for (; key && !key.empty(); key = stream.readWide()) batch.add(key, stream.readWide());
  return present;
}

void writeBagList(cfOStream& stream, const std::vector<propsW_t>& list) {
  stream.putU32(static_cast<std::uint32_t>(list.size()));
  for (const propsW_t& bag : list) writeBag(stream, bag);
}

void readBagList(cfIStream& stream, std::vector<propsW_t>& list) {
  list.clear();
  std::int32_t count = 0;
  stream.readU32(count);
  if (count > 0) list.reserve(likely_count(count, stream.left()));
  for (; count > 0; --count) {
    if (list.size() == max_listed_bags) return static_cast<void>(stream.ok = false);
    if (!readBag(stream, list.emplace_back())) return list.pop_back();
  }
}
