#include "json/writer.h"

#include <algorithm>

#include "transport/text.h"

namespace {

// Bytes that a string literal can't hold as they are. NUL isn't among them: it passes unchanged.
bool needs_escape(char c) { return c == '"' || c == '\\' || (c >= 1 && c <= 31); }

void put_escaped(std::string& out, char c) {
  constexpr char hex[] = "0123456789ABCDEF";
  switch (c) {
    case '\b':
      out += "\\b";
      break;
    case '\t':
      out += "\\t";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\f':
      out += "\\f";
      break;
    case '\r':
      out += "\\r";
      break;
    case '"':
    case '/':
    case '\\':
      out += '\\';
      out += c;
      break;
    default:
      if (needs_escape(c)) {
        out += "\\u00";
        out += hex[c >> 4];
        out += hex[c & 15];
      } else {
        out += c;
      }
  }
}

std::string closed(char opening, const std::string& members, char closing) {
  std::string text(1, opening);
  if (!members.empty()) text.append(members, 0, members.size() - 1);
  text += closing;
  return text;
}

pair_stream& put_key(pair_stream& stream, std::string_view key) {
  return stream << json_quote(key) << ':';
}

}  // namespace

pair_stream& json_put_int(pair_stream& stream, std::string_view key, std::int32_t value) {
  return put_key(stream, key) << value << ',';
}

pair_stream& json_put_string(pair_stream& stream, std::string_view key, std::string_view value) {
  return put_key(stream, key) << json_quote(value) << ',';
}

pair_stream& json_put_null(pair_stream& stream, std::string_view key) {
  return put_key(stream, key) << "null" << ',';
}

pair_stream& json_put_wide(pair_stream& stream, std::string_view key, wide_view value) {
  std::string narrow;
  if (!wide_to_utf8(narrow, value)) return json_put_null(stream, key);
  return json_put_string(stream, key, narrow);
}

pair_stream& json_put_object(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_key(stream, key) << json_close_object(inner) << ',';
}

pair_stream& json_put_array(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_key(stream, key) << json_close_array(inner) << ',';
}

std::string json_quote(std::string_view text) {
  std::string out;
  if (std::none_of(text.begin(), text.end(), needs_escape)) {
    out.reserve(text.size() + 2);
    return out.append(1, '"').append(text).append(1, '"');
  }
  // Two quotes, and two bytes for every byte of the text; only the rare \u escapes are longer.
  out.reserve(2 * text.size() + 3);
  out += '"';
  for (const char c : text) put_escaped(out, c);
  out += '"';
  return out;
}

std::string json_close_object(const pair_stream& stream) { return closed('{', stream.str(), '}'); }

std::string json_close_array(const pair_stream& stream) { return closed('[', stream.str(), ']'); }
