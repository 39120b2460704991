#include "json/parser.h"

#include <cstring>

#include "json/number_tokens.h"

namespace {

bool is_white_space(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool ends_number(char c) {
  return is_white_space(c) || c == ',' || c == ']' || c == '}' || c == '\0';
}

// The value of a hexadecimal digit, or -1.
int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// What a one-letter escape stands for, or NUL where there is no such escape.
char escaped_character(char letter) {
  switch (letter) {
    case '"':
    case '\\':
    case '/':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return '\0';
  }
}

// UTF-8 form of one UTF-16 code unit. The halves of a surrogate pair stay apart here, as three
// bytes each; the conversion to wide text joins them.
char* put_code_unit(char* out, int unit) {
  if (unit < 0x80) {
    *out++ = static_cast<char>(unit);
  } else if (unit < 0x800) {
    *out++ = static_cast<char>(0xC0 | unit >> 6);
    *out++ = static_cast<char>(0x80 | (unit & 0x3F));
  } else {
    *out++ = static_cast<char>(0xE0 | unit >> 12);
    *out++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    *out++ = static_cast<char>(0x80 | (unit & 0x3F));
  }
  return out;
}

// The state of one parse. Each step handles one token, moves the read position behind it and
// returns false after it has noted an error.
class parser {
 public:
  parser(char* source, node_arena& arena) : at_(source), arena_(arena) {}

  json_node* run() {
    do {
      if (!token()) return nullptr;
      while (is_white_space(*at_)) ++at_;
    } while (*at_ != '\0');
    if (top_ != nullptr) {
      fail(at_, "Not all objects/arrays have been properly closed");
      return nullptr;
    }
    return root_;
  }

  const char* error_position() const { return error_position_; }
  const char* error_text() const { return error_text_; }

 private:
  bool token() {
    switch (*at_) {
      case '{':
        return open_container(kind_object);
      case '[':
        return open_container(kind_array);
      case '}':
        return close_container(kind_object);
      case ']':
        return close_container(kind_array);
      default:
        return top_ != nullptr ? inner_token() : fail(at_, "Unexpected character");
    }
  }

  // A token that needs an open container.
  bool inner_token() {
    switch (*at_) {
      case '"':
        return string();
      case ':':
        if (top_->kind != kind_object) return fail(at_, "Unexpected character");
        [[fallthrough]];
      case ',':
        ++at_;
        return true;
      case 't':
        return literal("true", kind_bool, 1);
      case 'f':
        return literal("false", kind_bool, 0);
      case 'n':
        return literal("null", kind_null, 0);
      default:
        if (*at_ == '-' || (*at_ >= '0' && *at_ <= '9')) return number();
        return fail(at_, "Unexpected character");
    }
  }

  bool open_container(json_kind kind) {
    ++at_;
    if (top_ == nullptr && root_ != nullptr) {
      return fail(at_, "Second root. Only one root allowed");
    }
    json_node* const node = new_node(kind);
    if (top_ == nullptr) {
      root_ = node;
    } else {
      append(node);
    }
    top_ = node;
    return true;
  }

  bool close_container(json_kind kind) {
    if (top_ == nullptr || top_->kind != kind) return fail(at_, "Mismatch closing brace/bracket");
    top_ = top_->parent;
    ++at_;
    return true;
  }

  bool string() {
    char* const start = ++at_;
    if (!decode_string(start)) return false;
    if (pending_key_ == nullptr && top_->kind == kind_object) {
      pending_key_ = start;
      return true;
    }
    json_node* const node = new_node(kind_string);
    node->value.string = start;
    append(node);
    return true;
  }

  // Decodes the string that starts at the read position, in place. The decoded text is never longer
  // than what it stands for, so writing can't overtake reading.
  bool decode_string(char* start) {
    char* out = start;
    for (;;) {
      const char c = *at_;
      if (c == '"') {
        *out = '\0';
        ++at_;
        return true;
      }
      if (c == '\\') {
        if (!escape(start, out)) return false;
      } else if (static_cast<unsigned char>(c) >= 0x20) {
        *out++ = c;
        ++at_;
      } else if (c == '\0') {
        return true;  // the container that is still open makes an error of it
      } else {
        return fail(start, "Control characters not allowed in strings");
      }
    }
  }

  bool escape(const char* string_start, char*& out) {
    if (at_[1] == 'u') return code_unit_escape(out);
    const char character = escaped_character(at_[1]);
    if (character == '\0') return fail(string_start, "Unrecognized escape sequence");
    *out++ = character;
    at_ += 2;
    return true;
  }

  bool code_unit_escape(char*& out) {
    int unit = 0;
    for (int i = 2; i < 6; ++i) {
      const int digit = hex_digit(at_[i]);
      if (digit < 0) return fail(at_, "Bad unicode codepoint");
      unit = unit << 4 | digit;
    }
    out = put_code_unit(out, unit);
    at_ += 6;
    return true;
  }

  bool number() {
    json_node* const node = new_node(kind_int);
    const char* const start = at_;
    for (; !ends_number(*at_); ++at_) {
      if (*at_ == '.' || *at_ == 'e' || *at_ == 'E') node->kind = kind_float;
    }
    if (node->kind == kind_int) {
      if (parse_int_token(start, at_, node->value.integer) != at_) {
        return fail(start, "Bad integer number");
      }
    } else if (parse_float_token(start, at_, node->value.number) != at_) {
      return fail(start, "Bad float number");
    }
    append(node);
    return true;
  }

  bool literal(const char* word, json_kind kind, std::int32_t value) {
    const std::size_t length = std::strlen(word);
    // strncmp stops at the first difference, so the terminating NUL isn't passed.
    if (std::strncmp(at_, word, length) != 0) return fail(at_, "Unknown identifier");
    json_node* const node = new_node(kind);
    node->value.boolean = value;
    append(node);
    at_ += length;
    return true;
  }

  // A node that takes the pending key. Arena memory is raw, so every field is set.
  json_node* new_node(json_kind kind) {
    json_node* const node = arena_alloc(arena_);
    *node = json_node{};
    node->name = pending_key_;
    node->kind = kind;
    pending_key_ = nullptr;
    return node;
  }

  void append(json_node* node) {
    node->parent = top_;
    if (top_->last_child == nullptr) {
      top_->first_child = node;
    } else {
      top_->last_child->next_sibling = node;
    }
    top_->last_child = node;
  }

  bool fail(const char* position, const char* text) {
    error_position_ = position;
    error_text_ = text;
    return false;
  }

  char* at_;
  node_arena& arena_;
  json_node* root_ = nullptr;
  json_node* top_ = nullptr;           // the innermost open container
  const char* pending_key_ = nullptr;  // a key that no value has taken yet
  const char* error_position_ = nullptr;
  const char* error_text_ = nullptr;
};

}  // namespace

json_node* json_parse(char* source, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator) {
  if (*source == '\0') return nullptr;
  parser parse(source, allocator);
  json_node* const root = parse.run();
  if (root == nullptr) {
    errorPos = parse.error_position();
    errorDesc = parse.error_text();
  }
  return root;
}
