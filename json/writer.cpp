#include "json/writer.h"

#include <algorithm>

#include "json/plain_text.h"
#include "platform/platform.h"
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

// Whether the text is a literal as it stands. A NUL isn't plain to the scan, but to the writer it
// is.
bool is_literal(std::string_view text) {
  return is_plain_text(text.data(), text.size()) ||
         std::none_of(text.begin(), text.end(), needs_escape);
}

void put_literal(std::string& out, std::string_view text) {
  out += '"';
  if (is_literal(text)) {
    out += text;
  } else {
    for (const char c : text) put_escaped(out, c);
  }
  out += '"';
}

// The members of a stream, without their last comma, between brackets.
void put_closed(std::string& out, char opening, const std::string& members, char closing) {
  out += opening;
  if (!members.empty()) out.append(members, 0, members.size() - 1);
  out += closing;
}

std::string closed(char opening, const std::string& members, char closing) {
  std::string text;
  text.reserve(members.size() + 2);
  put_closed(text, opening, members, closing);
  return text;
}

void put_key(pair_stream& stream, std::string_view key) {
  put_literal(stream.text(), key);
  stream << ':';
}

pair_stream& put_container(pair_stream& stream, std::string_view key, char opening,
                           const pair_stream& inner, char closing) {
  put_key(stream, key);
  put_closed(stream.text(), opening, inner.str(), closing);
  return stream << ',';
}

// Most texts are short; their conversion needs no memory of its own.
constexpr std::size_t short_units = 170;
constexpr std::size_t most_bytes_of_a_unit = 3;

}  // namespace

pair_stream& json_put_int(pair_stream& stream, std::string_view key, std::int32_t value) {
  put_key(stream, key);
  return stream << value << ',';
}

pair_stream& json_put_string(pair_stream& stream, std::string_view key, std::string_view value) {
  put_key(stream, key);
  put_literal(stream.text(), value);
  return stream << ',';
}

pair_stream& json_put_null(pair_stream& stream, std::string_view key) {
  put_key(stream, key);
  return stream << "null,";
}

pair_stream& json_put_wide(pair_stream& stream, std::string_view key, wide_view value) {
  if (value.empty()) return json_put_string(stream, key, {});
  if (value.size() > short_units) {
    std::string narrow;
    if (!wide_to_utf8(narrow, value)) return json_put_null(stream, key);
    return json_put_string(stream, key, narrow);
  }
  char narrow[short_units * most_bytes_of_a_unit];
  const auto units = static_cast<std::uint32_t>(value.size());
  const std::string_view text(narrow, platform::utf16_to_utf8(value.data(), units, narrow));
  if (text.empty()) return json_put_null(stream, key);
  return json_put_string(stream, key, text.substr(0, text.find('\0')));
}

pair_stream& json_put_object(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_container(stream, key, '{', inner, '}');
}

pair_stream& json_put_array(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_container(stream, key, '[', inner, ']');
}

pair_stream& json_begin(pair_stream& stream, std::string_view key, char bracket) {
  put_key(stream, key);
  return stream << bracket;
}

pair_stream& json_begin(pair_stream& stream, char bracket) { return stream << bracket; }

pair_stream& json_end(pair_stream& stream, char bracket) {
  std::string& text = stream.text();
  if (text.back() == ',') text.pop_back();
  return stream << bracket << ',';
}

std::string json_quote(std::string_view text) {
  std::string out;
  // Two quotes, and two bytes for every byte of the text; only the rare \u escapes are longer.
  out.reserve((is_literal(text) ? 1 : 2) * text.size() + 3);
  put_literal(out, text);
  return out;
}

std::string json_close_object(const pair_stream& stream) { return closed('{', stream.str(), '}'); }

std::string json_close_array(const pair_stream& stream) { return closed('[', stream.str(), ']'); }
