#include "agent/punycode.h"

#include <algorithm>
#include <cstdint>

namespace {

// The parameters that RFC 3492 chose, with its names.
constexpr std::uint32_t base = 36;
constexpr std::uint32_t tmin = 1;
constexpr std::uint32_t tmax = 26;
constexpr std::uint32_t skew = 38;
constexpr std::uint32_t damp = 700;
constexpr std::uint32_t initial_bias = 72;
constexpr std::uint32_t initial_n = 0x80;

constexpr char32_t beyond_unicode = 0x110000;

// The label's characters; an empty text if it holds half a surrogate pair.
std::u32string characters_of(wide_view label) {
  std::u32string characters;
  for (std::size_t i = 0; i < label.size(); ++i) {
    char32_t c = label[i];
    if (c >= 0xD800 && c <= 0xDFFF) {
      const char32_t low = i + 1 < label.size() ? label[++i] : 0;
      if (c > 0xDBFF || low < 0xDC00 || low > 0xDFFF) return {};
      c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
    }
    characters.push_back(c);
  }
  return characters;
}

char digit(std::uint32_t value) {
  return static_cast<char>(value < 26 ? 'a' + value : '0' + (value - 26));
}

std::uint32_t adapt(std::uint32_t delta, std::uint32_t points, bool first) {
  delta = first ? delta / damp : delta / 2;
  delta += delta / points;
  std::uint32_t k = 0;
  for (; delta > (base - tmin) * tmax / 2; k += base) delta /= base - tmin;
  return k + (base - tmin + 1) * delta / (delta + skew);
}

// A number in digits of varying weight, the least significant first.
void append_number(std::string& out, std::uint32_t number, std::uint32_t bias) {
  for (std::uint32_t k = base;; k += base) {
    const std::uint32_t t = k <= bias ? tmin : std::min(k - bias, tmax);
    if (number < t) break;
    out += digit(t + (number - t) % (base - t));
    number = (number - t) / (base - t);
  }
  out += digit(number);
}

char32_t least_from(const std::u32string& characters, char32_t from) {
  char32_t least = beyond_unicode;
  for (const char32_t c : characters) {
    if (c >= from) least = std::min(least, c);
  }
  return least;
}

// Nothing here overflows: 64 times 0x110000 is still below 2^32.
std::string encoded(const std::u32string& characters) {
  std::string out;
  for (const char32_t c : characters) {
    if (c < initial_n) out += static_cast<char>(c);
  }
  const auto basic = static_cast<std::uint32_t>(out.size());
  if (basic > 0) out += '-';
  char32_t n = initial_n;
  std::uint32_t delta = 0;
  std::uint32_t bias = initial_bias;
  for (std::uint32_t handled = basic; handled < characters.size(); ++delta, ++n) {
    const char32_t next = least_from(characters, n);
    delta += (next - n) * (handled + 1);
    n = next;
    for (const char32_t c : characters) {
      if (c < n) ++delta;
      if (c != n) continue;
      append_number(out, delta, bias);
      bias = adapt(delta, handled + 1, handled == basic);
      delta = 0;
      ++handled;
    }
  }
  return out;
}

}  // namespace

bool append_ascii_label(std::string& out, wide_view label) {
  const std::u32string characters = characters_of(label.substr(0, 2 * longest_label + 1));
  if (characters.empty() || characters.size() > longest_label) return false;
  const bool is_ascii = least_from(characters, initial_n) == beyond_unicode;
  const std::string ascii =
      is_ascii ? std::string(characters.begin(), characters.end()) : "xn--" + encoded(characters);
  if (ascii.size() > longest_label) return false;
  out += ascii;
  return true;
}
