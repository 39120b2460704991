#include "transport/fragment_store.h"

#include <utility>

bool fragment_store::append(const std::string& id, std::string_view piece) {
  const auto position = touch(id);
  std::string& text = position->second.text;
  if (text.size() + piece.size() > max_gathered_text) {
    erase(position);
    return false;
  }
  // The message itself was touched last, so the others go before it, and without them it fits.
  while (text_size_ + piece.size() > max_gathered_text ||
         entries_.size() > max_unfinished_messages) {
    erase(entries_.find(*order_.front()));
  }
  text.append(piece);
  text_size_ += piece.size();
  return true;
}

std::string fragment_store::take(const std::string& id) {
  const auto position = entries_.find(id);
  text_size_ -= position->second.text.size();
  std::string text = std::move(position->second.text);
  order_.erase(position->second.touched);
  entries_.erase(position);
  return text;
}

// The entry of `id`, made if there is none, at the end of the order.
fragment_store::entries::iterator fragment_store::touch(const std::string& id) {
  const auto [position, is_new] = entries_.try_emplace(id);
  if (is_new) {
    position->second.touched = order_.insert(order_.end(), &position->first);
  } else {
    order_.splice(order_.end(), order_, position->second.touched);
  }
  return position;
}

void fragment_store::erase(entries::iterator position) {
  text_size_ -= position->second.text.size();
  order_.erase(position->second.touched);
  entries_.erase(position);
}
