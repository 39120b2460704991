#include "json/writer.h"

#include <algorithm>
#include <cstring>

#include "platform/platform.h"
#include "transport/codecs/text.h"

namespace {

// Bytes that a string literal can't hold as they are. NUL isn't among them: it passes unchanged.
bool needs_escape(char c) { return c == '"' || c == '\\' || (c >= 1 && c <= 31); }

constexpr std::size_t longest_escape = 6;
constexpr std::size_t escaped_step = 512;

// Returns the position after what it has written.
char* put_escaped(char* out, char c) {
  constexpr char hex[] = "0123456789ABCDEF";
  const auto put_pair = [&](char second) {
    *out++ = '\\';
    *out++ = second;
  };
  switch (c) {
    case '\b':
      put_pair('b');
      break;
    case '\t':
      put_pair('t');
      break;
    case '\n':
      put_pair('n');
      break;
    case '\f':
      put_pair('f');
      break;
    case '\r':
      put_pair('r');
      break;
    case '"':
    case '/':
    case '\\':
      put_pair(c);
      break;
    default:
      if (!needs_escape(c)) {
        *out++ = c;
        break;
      }
      put_pair('u');
      *out++ = '0';
      *out++ = '0';
      *out++ = hex[c >> 4];
      *out++ = hex[c & 15];
  }
  return out;
}

// Whether the text needs no escape. The scan stops at a NUL, which the writer passes unchanged.
bool is_literal(std::string_view text) {
  return is_plain_text(text.data(), text.size()) ||
         std::none_of(text.begin(), text.end(), needs_escape);
}

// Requires room for the text and two quotes.
char* put_quoted(char* out, std::string_view text) {
  *out++ = '"';
  if (!text.empty()) std::memcpy(out, text.data(), text.size());
  out += text.size();
  *out++ = '"';
  return out;
}

void put_literal(pair_stream& stream, std::string_view text) {
  if (is_literal(text)) {
    put_quoted(stream.room(text.size() + 2), text);
    stream.keep(text.size() + 2);
    return;
  }
  stream << '"';
  // In steps: room for a long text that is all escapes would be six times its size.
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), escaped_step))) {
    char* const start = stream.room(longest_escape * escaped_step);
    char* out = start;
    for (const char c : text.substr(0, escaped_step)) out = put_escaped(out, c);
    stream.keep(static_cast<std::size_t>(out - start));
  }
  stream << '"';
}

// The members of a stream, without their last comma.
std::string_view members_of(const pair_stream& stream) {
  const std::string_view members = stream.str();
  return members.substr(0, members.size() - (members.empty() ? 0 : 1));
}

std::string closed(char opening, const pair_stream& stream, char closing) {
  const std::string_view members = members_of(stream);
  std::string text;
  text.reserve(members.size() + 2);
  text += opening;
  text += members;
  text += closing;
  return text;
}

pair_stream& put_key(pair_stream& stream, std::string_view key) {
  put_literal(stream, key);
  return stream << ':';
}

pair_stream& put_container(pair_stream& stream, std::string_view key, char opening,
                           const pair_stream& inner, char closing) {
  return put_key(stream, key) << opening << members_of(inner) << closing << ',';
}

constexpr std::size_t most_bytes_of_a_unit = 3;

// Longer texts are converted in a buffer of their own first.
constexpr std::size_t short_units = 170;

// Converts a short text that needs no escape right into the stream; most texts are like that.
// False, with the stream unchanged, for any other text.
bool put_plain_pair(pair_stream& stream, const json_name& name, wide_view value) {
  const std::string_view key = name.text();
  if (value.size() > short_units) return false;
  if (!name.is_plain() && !is_plain_text(key.data(), key.size())) return false;
  constexpr std::size_t marks = 6;
  char* const start = stream.room(key.size() + most_bytes_of_a_unit * value.size() + marks);
  char* out = put_quoted(start, key);
  *out++ = ':';
  *out++ = '"';
  const auto units = static_cast<std::uint32_t>(value.size());
  const std::size_t made = platform::utf16_to_utf8(value.data(), units, out);
  if (made == 0 || !is_plain_text(out, made)) return false;
  out += made;
  *out++ = '"';
  *out++ = ',';
  stream.keep(static_cast<std::size_t>(out - start));
  return true;
}

}  // namespace

pair_stream& json_put_int(pair_stream& stream, std::string_view key, std::int32_t value) {
  return put_key(stream, key) << value << ',';
}

pair_stream& json_put_string(pair_stream& stream, std::string_view key, std::string_view value) {
  put_literal(put_key(stream, key), value);
  return stream << ',';
}

pair_stream& json_put_null(pair_stream& stream, std::string_view key) {
  return put_key(stream, key) << "null,";
}

pair_stream& json_put_wide(pair_stream& stream, const json_name& key, wide_view value) {
  if (value.empty()) return json_put_string(stream, key.text(), {});
  if (put_plain_pair(stream, key, value)) return stream;
  std::string narrow;
  if (!wide_to_utf8(narrow, value)) return json_put_null(stream, key.text());
  return json_put_string(stream, key.text(), narrow);
}

pair_stream& json_put_object(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_container(stream, key, '{', inner, '}');
}

pair_stream& json_put_array(pair_stream& stream, std::string_view key, const pair_stream& inner) {
  return put_container(stream, key, '[', inner, ']');
}

pair_stream& json_begin(pair_stream& stream, std::string_view key, char bracket) {
  return put_key(stream, key) << bracket;
}

pair_stream& json_begin(pair_stream& stream, char bracket) { return stream << bracket; }

pair_stream& json_end(pair_stream& stream, char bracket) {
  stream.drop_last(',');
  return stream << bracket << ',';
}

std::string json_quote(std::string_view text) {
  pair_stream stream;
  put_literal(stream, text);
  return std::string(stream.str());
}

std::string json_close_object(const pair_stream& stream) { return closed('{', stream, '}'); }

std::string json_close_array(const pair_stream& stream) { return closed('[', stream, ']'); }
