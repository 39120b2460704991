#include "transport/fragment_store.h"

#include <algorithm>
#include <utility>

bool fragment_store::append(const std::string& id, std::string_view piece) {
  const auto known = entries_.find(id);
  const std::size_t own_size = known == entries_.end() ? 0 : known->second.text.size();
  if (own_size + piece.size() > max_gathered_text) {
    if (known != entries_.end()) erase(known);
    return false;
  }
  make_room(id, piece.size());
  entry& target = entries_[id];
  target.text.append(piece);
  target.touched = ++clock_;
  text_size_ += piece.size();
  return true;
}

std::string fragment_store::take(const std::string& id) {
  const auto position = entries_.find(id);
  std::string text = std::move(position->second.text);
  text_size_ -= text.size();
  entries_.erase(position);
  return text;
}

// Drops other messages until the piece fits.
void fragment_store::make_room(const std::string& id, std::size_t piece_size) {
  const std::size_t most_others = max_unfinished_messages - 1;
  while (text_size_ + piece_size > max_gathered_text ||
         entries_.size() - entries_.count(id) > most_others) {
    const auto age = [&id](const entries::value_type& e) {
      return e.first == id ? UINT64_MAX : e.second.touched;
    };
    erase(std::min_element(entries_.begin(), entries_.end(),
                           [&age](const auto& a, const auto& b) { return age(a) < age(b); }));
  }
}

void fragment_store::erase(entries::iterator position) {
  text_size_ -= position->second.text.size();
  entries_.erase(position);
}
