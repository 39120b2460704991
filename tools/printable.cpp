#include "tools/printable.h"

#include <cstdint>
#include <cstdio>

namespace {

struct character {
  std::uint32_t code = 0;
  std::size_t size = 1;  // in bytes
  bool whole = false;    // false for a byte that isn't part of valid UTF-8
};

// The character at the start of a non-empty text.
character first_character(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t size = lead < 0xC2   ? 0
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 0;
  if (size == 0 || size > text.size()) return {lead};
  std::uint32_t code = lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if ((c & 0xC0) != 0x80) return {lead};
    code = code << 6 | (c & 0x3FU);
  }
  return {code, size, true};
}

bool is_control(std::uint32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

// These make a terminal show a line in a different order than it is written.
bool turns_direction(std::uint32_t code) {
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

bool is_blank(std::uint32_t code) { return code == '\t' || code == '\r' || code == '\n'; }

void put_escape(std::string& line, std::uint32_t code) {
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(code & 0xFFFF));
  line += escape;
}

}  // namespace

std::string printable_line(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    const character c = first_character(text);
    if (is_blank(c.code)) {
      line += ' ';
    } else if (!c.whole || is_control(c.code) || turns_direction(c.code)) {
      put_escape(line, c.code);
    } else {
      line += text.substr(0, c.size);
    }
    text.remove_prefix(c.size);
  }
  return line;
}
