// Writes compact RFC 8259 JSON, pair by pair, without a document tree.
//
// Keys and narrow values are UTF-8; the writer quotes them. The put operations append one pair and
// a comma, and return the stream. Nothing is sorted, and duplicate keys aren't looked for.
#pragma once

#include "json/pair_stream.h"
#include "json/plain_text.h"
#include "platform/wide.h"

// A member's name. A constant one is checked when the program is compiled, and must not need an
// escape.
class json_name {
 public:
  consteval json_name(const char* text) : text_(text), is_plain_(true) {
    for (const char c : text_) {
      if (interrupts_text(c)) name_needs_escape();
    }
  }
  json_name(std::string_view text) : text_(text) {}

  std::string_view text() const { return text_; }
  bool is_plain() const { return is_plain_; }

 private:
  static void name_needs_escape();  // ends the compilation

  std::string_view text_;
  bool is_plain_ = false;
};

pair_stream& json_put_int(pair_stream& stream, std::string_view key, std::int32_t value);
pair_stream& json_put_string(pair_stream& stream, std::string_view key, std::string_view value);
pair_stream& json_put_null(pair_stream& stream, std::string_view key);

// Puts the UTF-8 form of `value`, or null if it can't be converted.
pair_stream& json_put_wide(pair_stream& stream, const json_name& key, wide_view value);

// Puts the members of `inner` as one object or array.
pair_stream& json_put_object(pair_stream& stream, std::string_view key, const pair_stream& inner);
pair_stream& json_put_array(pair_stream& stream, std::string_view key, const pair_stream& inner);

// Open a container under a key, or as an element of an array, and close the innermost one: what is
// put in between are its members. The text is the same as with a stream of its own, but nothing has
// to be copied. `bracket` is the opening bracket for the one, the closing bracket for the other.
pair_stream& json_begin(pair_stream& stream, std::string_view key, char bracket);
pair_stream& json_begin(pair_stream& stream, char bracket);
pair_stream& json_end(pair_stream& stream, char bracket);

// `text` as a string literal, quotes included. The solidus is escaped only where another character
// needs an escape; bytes from 127 up pass unchanged.
std::string json_quote(std::string_view text);

// The finished container: the stream's text in brackets, without its last comma.
std::string json_close_object(const pair_stream& stream);
std::string json_close_array(const pair_stream& stream);
