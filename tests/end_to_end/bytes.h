// Byte strings as the tests and the probe exchange them.
#pragma once

#include <string>
#include <string_view>

template <class Bytes>
std::string to_hex(const Bytes& bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const auto c : bytes) text += {digits[c >> 4 & 0xF], digits[c & 0xF]};
  return text;
}

inline std::string from_hex(std::string_view text) {
  std::string bytes;
  for (; text.size() >= 2; text.remove_prefix(2)) {
    bytes += static_cast<char>(std::stoi(std::string(text.substr(0, 2)), nullptr, 16));
  }
  return bytes;
}
