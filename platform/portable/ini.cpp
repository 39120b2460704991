#include "platform/portable/ini.h"

#include <algorithm>

namespace {

constexpr std::string_view blanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool same_name(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return folded(x) == folded(y); });
}

std::string_view unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view take_line(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmed(line);
}

}  // namespace

std::optional<std::string_view> find_ini_value(std::string_view text, std::string_view section,
                                               std::string_view key) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (text.substr(0, byte_order_mark.size()) == byte_order_mark) {
    text.remove_prefix(byte_order_mark.size());
  }

  bool in_section = false;
  while (!text.empty()) {
    const std::string_view line = take_line(text);
    if (line.empty() || line.front() == ';') continue;
    if (line.front() == '[') {
      if (in_section) return std::nullopt;
      in_section = same_name(trimmed(line.substr(1, line.find(']') - 1)), section);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!in_section || equals == std::string_view::npos) continue;
    if (same_name(trimmed(line.substr(0, equals)), key)) {
      return unquoted(trimmed(line.substr(equals + 1)));
    }
  }
  return std::nullopt;
}
