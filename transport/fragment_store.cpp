#include "transport/fragment_store.h"

#include <utility>

bool fragment_store::append(const std::string& id, std::string_view piece) {
  entry& e = touch(id)->second;
  if (e.dropped) return false;
  if (e.text.size() + piece.size() > bounds_.text) {
    drop(e);
    return false;
  }
  // This message was touched last, so the others are dropped before it, and without them it fits.
  while (text_size_ + piece.size() > bounds_.text || kept_.size() > bounds_.messages) {
    drop(entries_.find(*kept_.front())->second);
  }
  e.text.append(piece);
  text_size_ += piece.size();
  return true;
}

std::optional<std::string> fragment_store::take(const std::string& id) {
  const auto position = entries_.find(id);
  std::optional<std::string> text;
  if (!position->second.dropped) text = std::move(position->second.text);
  if (text) text_size_ -= text->size();
  erase(position);
  return text;
}

// The entry of `id`, made if there is none, moved to the end of its order.
fragment_store::entries::iterator fragment_store::touch(const std::string& id) {
  const auto [position, is_new] = entries_.try_emplace(id);
  entry& e = position->second;
  if (is_new) e.touched = kept_.insert(kept_.end(), &position->first);
  touch_order& order = e.dropped ? dropped_ : kept_;
  order.splice(order.end(), order, e.touched);
  return position;
}

// Keeps only the id. If there are too many, the one that was untouched longest is forgotten.
void fragment_store::drop(entry& e) {
  text_size_ -= e.text.size();
  e.text = {};
  e.dropped = true;
  dropped_.splice(dropped_.end(), kept_, e.touched);
  if (dropped_.size() > bounds_.messages) erase(entries_.find(*dropped_.front()));
}

void fragment_store::erase(entries::iterator position) {
  entry& e = position->second;
  (e.dropped ? dropped_ : kept_).erase(e.touched);
  entries_.erase(position);
}
