#include "tests/fuzz/fuzzing.h"

#include <cstdio>
#include <cstdlib>

void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "Broken promise: %s\n", promise);
  std::abort();
}

std::uint8_t take_byte(std::string_view& input) {
  if (input.empty()) return 0;
  const auto byte = static_cast<std::uint8_t>(input.front());
  input.remove_prefix(1);
  return byte;
}

std::string_view take_text(std::string_view& input) {
  const std::size_t end = input.find("\n\n");
  const std::string_view text = input.substr(0, end);
  input.remove_prefix(end == input.npos ? input.size() : end + 2);
  return text;
}

std::string plainly_decoded(std::string_view text) {
  constexpr std::string_view alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  std::size_t held = 0, width = 0;  // of the bits that don't make a byte yet
  bool between_groups = true;
  for (const char c : text) {
    if (c == '\0' && between_groups) break;
    between_groups = false;
    const std::size_t value = alphabet.find(c);
    if (value == alphabet.npos) continue;
    held = held << 6 | value;
    width += 6;
    if (width < 8) continue;
    width -= 8;
    bytes += static_cast<char>(held >> width);
    between_groups = width == 0;
  }
  return bytes;
}
