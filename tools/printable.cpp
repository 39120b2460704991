#include "tools/printable.h"

#include <cstdio>

namespace {

// First byte of U+0080 to U+00BF in UTF-8, the lower half of which are control characters.
constexpr unsigned char latin1_lead = 0xC2;

bool is_blank(unsigned char c) { return c == '\t' || c == '\r' || c == '\n'; }

void put_escape(std::string& line, unsigned int code) {
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", code & 0xFF);
  line += escape;
}

}  // namespace

std::string printable_line(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto c = static_cast<unsigned char>(text[at]);
    const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : '\0');
    if (is_blank(c)) {
      line += ' ';
    } else if (c < 0x20 || c == 0x7F) {
      put_escape(line, c);
    } else if (c == latin1_lead && next >= 0x80 && next < 0xA0) {
      put_escape(line, next);
      ++at;
    } else {
      line += text[at];
    }
  }
  return line;
}
