#include "tools/setup/json_taker.h"

bool json_taker::take(char c) {
  if (is_at_end() || here() != c) return false;
  out_ += c;
  ++at_;
  return true;
}

bool json_taker::skip(std::string_view expected) {
  if (!starts_with(expected)) return false;
  at_ += expected.size();
  return true;
}

bool json_taker::take_word(std::string_view word) {
  for (const char c : word) {
    if (!take(c)) return false;
  }
  return true;
}
