#include "tools/setup/json_scalars.h"

#include <cmath>
#include <cstdlib>

namespace {

bool take_digits(json_taker& from) {
  const std::size_t start = from.at();
  while (from.here() >= '0' && from.here() <= '9') from.take(from.here());
  return from.at() > start;
}

bool take_number_form(json_taker& from) {
  from.take('-');
  if (!from.take('0') && !take_digits(from)) return false;
  if (from.take('.') && !take_digits(from)) return false;
  if (from.take('e') || from.take('E')) {
    if (!from.take('+')) from.take('-');
    return take_digits(from);
  }
  return true;
}

// Digits of an escape; -1 if there aren't as many.
int skip_hexadecimal(json_taker& from, int count) {
  int code = 0;
  for (; count > 0; --count) {
    const char c = from.here();
    const int digit = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : -1;
    if (digit < 0) return -1;
    code = code * 16 + digit;
    from.go_to(from.at() + 1);
  }
  return code;
}

// NUL would end the text for the parser: another character that no name has stands for it.
void put_escape(json_taker& to, int code) {
  constexpr char digits[] = "0123456789abcdef";
  if (code == 0) code = 0xFFFD;
  to.out() += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) to.out() += digits[code >> shift & 0xF];
}

bool take_wide_escape(json_taker& from, const json_leniency& leniency) {
  const int code = skip_hexadecimal(from, 4);
  if (code < 0) return false;
  put_escape(from, code);
  if (leniency.lone_surrogates || (code & 0xF800) != 0xD800) return true;
  if ((code & 0x400) != 0 || !from.skip("\\u")) return false;
  const int second = skip_hexadecimal(from, 4);
  put_escape(from, second);
  return (second & 0xFC00) == 0xDC00;
}

// Behind the backslash.
bool take_escape(json_taker& from, const json_leniency& leniency) {
  if (from.skip("u")) return take_wide_escape(from, leniency);
  if (leniency.hex_escapes && from.skip("x")) {
    const int code = skip_hexadecimal(from, 2);
    put_escape(from, code);
    return code >= 0;
  }
  constexpr std::string_view simple = "\"\\/bfnrt";
  if (from.here() == '\0' || simple.find(from.here()) == std::string_view::npos) return false;
  from.out() += '\\';
  return from.take(from.here());
}

bool take_character(json_taker& from, const json_leniency& leniency) {
  if (from.skip("\\")) return take_escape(from, leniency);
  const auto code = static_cast<unsigned char>(from.here());
  if (code >= 0x20) return from.take(from.here());
  if (!leniency.line_ends_in_strings || (code != '\n' && code != '\r')) return false;
  put_escape(from, code);
  from.go_to(from.at() + 1);
  return true;
}

}  // namespace

bool take_string(json_taker& from, const json_leniency& leniency) {
  if (!from.take('"')) return false;
  while (!from.take('"')) {
    if (!take_character(from, leniency)) return false;
  }
  return true;
}

bool take_number(json_taker& from) {
  const std::size_t start = from.out().size();
  return take_number_form(from) && std::isfinite(std::strtod(from.out().c_str() + start, nullptr));
}
