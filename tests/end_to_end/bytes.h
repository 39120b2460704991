// Byte strings as the tests and the probe exchange them, and the generator of damaged ones.
#pragma once

#include <cstdint>
#include <random>
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

// The same seed gives the same damage.
class mutator {
 public:
  explicit mutator(std::uint64_t seed) : random_(seed) {}

  // A number from 0 to `limit` - 1; `limit` is at least 1.
  std::size_t below(std::size_t limit) { return random_() % limit; }

  std::string mutated(std::string bytes) {
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
      const std::size_t at = below(bytes.size() + 1);
      const std::size_t length = below(1 + below(bytes.size() - at + 1));
      if (const std::size_t kind = below(3); kind == 0) {
        bytes.replace(at, length, pieces[below(std::size(pieces))]);
      } else if (kind == 1) {
        bytes.insert(at, bytes.substr(below(bytes.size() + 1), length));
      } else if (at < bytes.size()) {
        bytes[at] = static_cast<char>(below(256));
      }
    }
    return bytes;
  }

 private:
  static constexpr std::string_view pieces[] = {
      "",  "\"",  "\\",         "\\u",          "\\ud83d",   "{",
      "}", "[",   "]",          "null",         ":",         "-",
      "=", "1e9", "4294967295", "\xED\xA0\x80", {"\0\0", 2}, "\xFF\xFF\xFF\x7F"};
  std::mt19937_64 random_;
};
