#include "json/parser.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "json/escapes.h"
#include "json/number_tokens.h"
#include "json/string_marks.h"

namespace {

// The first use of wide vectors costs as much as scanning a kilobyte without them.
constexpr std::size_t least_wide = 2048;

bool is_white_space(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool may_be_white_space(char c) { return static_cast<unsigned char>(c) <= ' '; }

bool ends_number(char c) {
  return is_white_space(c) || c == ',' || c == ']' || c == '}' || c == '\0';
}

// Whether the text continues with this word. No byte of a word is NUL, so the text's end isn't
// passed.
bool goes_on_with(const char* at, std::string_view word) {
  for (const char c : word) {
    if (*at++ != c) return false;
  }
  return true;
}

// The state of one parse. Each step takes the position of a token and returns the position after
// it, or null after it has noted an error. It also skips the punctuation that usually follows the
// token.
class parser {
 public:
  parser(char* text, char* end, node_arena& arena, int width)
      : marks_(text, end, width), nodes_(arena) {}

  json_node* run(char* at) {
    do {
      at = token(at);
      if (at == nullptr) return nullptr;
      if (may_be_white_space(*at)) {
        while (is_white_space(*at)) ++at;
      }
    } while (*at != '\0');
    if (top_ != nullptr) {
      fail(at, "Not all objects/arrays have been properly closed");
      return nullptr;
    }
    return root_;
  }

  const char* error_position() const { return error_position_; }
  const char* error_text() const { return error_text_; }

 private:
  char* token(char* at) {
    switch (*at) {
      case '{':
        return open_container(at, kind_object);
      case '[':
        return open_container(at, kind_array);
      case '}':
        return close_container(at, kind_object);
      case ']':
        return close_container(at, kind_array);
      default:
        return top_ != nullptr ? inner_token(at) : fail(at, "Unexpected character");
    }
  }

  // A token that needs an open container.
  char* inner_token(char* at) {
    switch (*at) {
      case '"':
        return string(at + 1);
      case ':':
        return top_->kind == kind_object ? at + 1 : fail(at, "Unexpected character");
      case ',':
        return at + 1;
      case 't':
        return literal(at, "true", kind_bool, 1);
      case 'f':
        return literal(at, "false", kind_bool, 0);
      case 'n':
        return literal(at, "null", kind_null, 0);
      default:
        if (*at == '-' || (*at >= '0' && *at <= '9')) return number(at);
        return fail(at, "Unexpected character");
    }
  }

  char* open_container(char* at, json_kind kind) {
    if (top_ == nullptr && root_ != nullptr) {
      return fail(at + 1, "Second root. Only one root allowed");
    }
    json_node* const node = new_node(kind);
    if (node == nullptr) return too_large(at);
    if (top_ == nullptr) {
      root_ = node;
    } else {
      append(node);
    }
    top_ = node;
    return kind == kind_object && at[1] == '"' ? string_members(at + 2) : at + 1;
  }

  char* close_container(char* at, json_kind kind) {
    if (top_ == nullptr || top_->kind != kind) return fail(at, "Mismatch closing brace/bracket");
    top_ = top_->parent;
    return top_ != nullptr ? behind_value(at + 1) : at + 1;
  }

  // `start` is the position after the opening quote.
  char* string(char* start) {
    if (pending_key_ == nullptr && top_->kind == kind_object) return string_members(start);
    char* const at = decode_string(start);
    return at != nullptr ? add_string(start, at) : nullptr;
  }

  // A key and its string value, and all further pairs of that kind as long as only the usual
  // punctuation stands between them. Most of a page consists of such pairs. The positions come from
  // the marks, so no step has to wait for the text of the step before.
  char* string_members(char* key) {
    json_node* const object = top_;
    json_node* last = object->last_child;
    char* const* mark = marks_.begin();
    for (;;) {
      // The ends of key and value, and one mark more: the bytes up to that one may be read.
      if (marks_.end() - mark < 3) {
        marks_.take_to(mark);
        marks_.look_on();
        mark = marks_.begin();
        if (marks_.end() - mark < 3) break;
      }
      char* const key_end = mark[0];
      char* const value = key_end + 3;
      char* at = mark[1];
      if (std::memcmp(key_end, R"(":")", 3) != 0 || *at != '"') break;
      *key_end = *at = '\0';
      json_node* const node = nodes_.take();
      if (node == nullptr) return too_large(value);
      *node = {object, nullptr, nullptr, nullptr, key, {value}, kind_string, size_of(value, at)};
      (last != nullptr ? last->next_sibling : object->first_child) = node;
      object->last_child = last = node;
      mark += 2;
      if (at[1] != ',' || at[2] != '"') {
        marks_.take_to(mark);
        return behind_value(at + 1);
      }
      key = at + 3;
    }
    marks_.take_to(mark);
    return unusual_member(key);
  }

  // A key, and its value if that is a string.
  char* unusual_member(char* key) {
    char* at = decode_string(key);
    if (at == nullptr) return nullptr;
    pending_key_ = key;
    if (*at != ':') return at;
    return at[1] == '"' ? string(at + 2) : at + 1;
  }

  char* add_string(char* start, char* at) {
    json_node* const node = new_node(kind_string);
    if (node == nullptr) return too_large(start);
    node->value.string = start;
    node->text_length = text_length_;
    append(node);
    return behind_value(at);
  }

  // Decodes in place. The decoded text is never longer than what it stands for, so writing can't
  // overtake reading.
  char* decode_string(char* start) {
    char* const at = marks_.take();
    if (*at != '"') return decode_interrupted_string(start, at);
    *at = '\0';
    text_length_ = size_of(start, at);
    return at + 1;
  }

  // The rest of a string. `at` is its first byte that is neither plain text nor the closing quote.
  char* decode_interrupted_string(char* start, char* at) {
    char* out = at;
    first_nul_ = nullptr;
    while (*at == '\\') {
      at = escape(start, at, out);
      if (at == nullptr) return nullptr;
      char* const plain = at;
      at = marks_.take();
      out = move_back(out, plain, static_cast<std::size_t>(at - plain));
    }
    if (*at == '"') {
      *out = '\0';
      text_length_ = size_of(start, first_nul_ != nullptr ? first_nul_ : out);
      return at + 1;
    }
    // The container that is still open makes an error of the end.
    return *at == '\0' ? at : fail(start, "Control characters not allowed in strings");
  }

  char* escape(char* string_start, char* at, char*& out) {
    if (at[1] == 'u') return code_unit_escape(at, out);
    const char character = escaped_character(at[1]);
    if (character == '\0') return fail(string_start, "Unrecognized escape sequence");
    *out++ = character;
    return at + 2;
  }

  char* code_unit_escape(char* at, char*& out) {
    int unit = 0;
    for (int i = 2; i < 6; ++i) {
      const int digit = hex_digit(at[i]);
      if (digit == no_digit) return fail(at, "Bad unicode codepoint");
      unit = unit << 4 | digit;
    }
    if (unit == 0 && first_nul_ == nullptr) first_nul_ = out;
    out = put_code_unit(out, unit);
    return at + 6;
  }

  char* number(char* start) {
    json_node* const node = new_node(kind_int);
    if (node == nullptr) return too_large(start);
    nodes_.note_number();
    char* at = start;
    for (; !ends_number(*at); ++at) {
      if (*at == '.' || *at == 'e' || *at == 'E') node->kind = kind_float;
    }
    if (node->kind == kind_int) {
      if (parse_int_token(start, at, node->value.integer) != at) {
        return fail(start, "Bad integer number");
      }
    } else if (parse_float_token(start, at, node->value.number) != at) {
      return fail(start, "Bad float number");
    }
    append(node);
    return behind_value(at);
  }

  char* literal(char* at, std::string_view word, json_kind kind, std::int32_t value) {
    if (!goes_on_with(at, word)) return fail(at, "Unknown identifier");
    json_node* const node = new_node(kind);
    if (node == nullptr) return too_large(at);
    node->value.boolean = value;
    append(node);
    return behind_value(at + word.size());
  }

  // Skips the comma that follows most values. A container is open.
  static char* behind_value(char* at) { return *at == ',' ? at + 1 : at; }

  // A node that takes the pending key, if there is one. Null at the arena's bound. Arena memory is
  // raw, so every field is set.
  json_node* new_node(json_kind kind) {
    json_node* const node = nodes_.take();
    if (node == nullptr) return nullptr;
    *node = {top_, nullptr, nullptr, nullptr, pending_key_, {}, kind, 0};
    pending_key_ = nullptr;
    return node;
  }

  void append(json_node* node) {
    if (top_->last_child == nullptr) {
      top_->first_child = node;
    } else {
      top_->last_child->next_sibling = node;
    }
    top_->last_child = node;
  }

  static std::uint32_t size_of(const char* start, const char* end) {
    return static_cast<std::uint32_t>(end - start);
  }

  char* too_large(const char* position) { return fail(position, "Too many values"); }

  char* fail(const char* position, const char* text) {
    error_position_ = position;
    error_text_ = text;
    return nullptr;
  }

  string_marks marks_;
  arena_nodes nodes_;
  json_node* root_ = nullptr;
  json_node* top_ = nullptr;           // the innermost open container
  const char* pending_key_ = nullptr;  // a key that no value has taken yet
  std::uint32_t text_length_ = 0;      // of the last decoded string
  const char* first_nul_ = nullptr;    // that an escape has written into it
  const char* error_position_ = nullptr;
  const char* error_text_ = nullptr;
};

}  // namespace

json_node* json_parse(char* source, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator) {
  return json_parse(source, std::strlen(source), errorPos, errorDesc, allocator);
}

json_node* json_parse(char* source, std::size_t size, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator) {
  const int widest = size < least_wide ? 16 : 32;
  return json_parse(source, size, errorPos, errorDesc, allocator,
                    std::min(string_marks_width, widest));
}

json_node* json_parse(char* source, std::size_t size, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator, int width) {
  if (*source == '\0') return nullptr;
  parser parse(source, source + size, allocator, width);
  json_node* const root = parse.run(source);
  if (root == nullptr) {
    errorPos = parse.error_position();
    errorDesc = parse.error_text();
  }
  return root;
}
