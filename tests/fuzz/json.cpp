// Compares the parser with a second implementation of the dialect, and the writer with both.

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "json/parser.h"
#include "json/string_marks.h"
#include "json/writer.h"
#include "tests/fuzz/fuzzing.h"
#include "tools/setup/lenient_json.h"

namespace {

using optional_text = std::optional<std::string>;

// One line for each value, in the order of the text.
std::string line(std::size_t depth, const optional_text& name, const std::string& picture) {
  return std::to_string(depth) + (name ? '"' + *name + "\"=" : " ") + picture + '\n';
}

// Reads token by token from a text that isn't changed. A step returns false after an error.
struct second_reading {
  explicit second_reading(const std::string& source) : text(source) {
    while (at < text.size() && token()) {
      at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
    }
    if (error.empty() && !open.empty()) {
      fail(at, "Not all objects/arrays have been properly closed");
    }
  }

  bool token() {
    const char c = text[at];
    if (c == '{' || c == '[') {
      if (open.empty() && !lines.empty()) {
        return fail(at + 1, "Second root. Only one root allowed");
      }
      add({c}, 1);
      open += c;
      return true;
    }
    if (c == '}' || c == ']') {
      const bool fits = !open.empty() && open.back() == (c == '}' ? '{' : '[');
      if (!fits) return fail(at, "Mismatch closing brace/bracket");
      open.pop_back();
      return ++at > 0;
    }
    const std::string_view starts = open.empty() ? "" : open.back() == '{' ? ",:tfn" : ",tfn";
    if (c == '"' && !open.empty()) return string();
    if ((c == '-' || (c >= '0' && c <= '9')) && !open.empty()) return number();
    if (starts.find(c) == starts.npos) return fail(at, "Unexpected character");
    if (c == ',' || c == ':') return ++at > 0;
    for (const std::string word : {"true", "false", "null"}) {
      if (text.compare(at, word.size(), word) == 0) return add(word, word.size());
    }
    return fail(at, "Unknown identifier");
  }

  bool string() {
    const std::size_t start = ++at;
    std::string decoded;
    for (; at < text.size() && text[at] != '"'; ++at) {
      if (text[at] > 0 && text[at] < 32) {
        return fail(start, "Control characters not allowed in strings");
      }
      if (text[at] != '\\') {
        decoded += text[at];
      } else if (!escape(start, decoded)) {
        return false;
      }
    }
    if (at == text.size()) return true;
    decoded.resize(std::strlen(decoded.c_str()));
    if (open.back() != '{' || name) return add('"' + decoded + '"', 1);
    name = decoded;
    return ++at > 0;
  }

  // Stops at the last character of the escape.
  bool escape(std::size_t string_start, std::string& decoded) {
    constexpr std::string_view letters = "\"\\/bfnrt", meanings = "\"\\/\b\f\n\r\t";
    const std::string rest = text.substr(at + 1, 5);
    const std::size_t letter = rest.empty() ? letters.npos : letters.find(rest[0]);
    if (letter != letters.npos) return decoded += meanings[letter], ++at > 0;
    if (rest[0] != 'u') return fail(string_start, "Unrecognized escape sequence");
    if (rest.find_first_not_of("0123456789abcdefABCDEF", 1) != rest.npos || rest.size() < 5) {
      return fail(at, "Bad unicode codepoint");
    }
    const int unit = std::stoi(rest.substr(1), nullptr, 16);
    if (unit >= 0x800) decoded += static_cast<char>(0xE0 + unit / 4096);
    if (unit >= 0x80) {
      decoded += static_cast<char>(unit < 0x800 ? 0xC0 + unit / 64 : 0x80 + unit / 64 % 64);
    }
    decoded += static_cast<char>(unit < 0x80 ? unit : 0x80 + unit % 64);
    return (at += 5) > 0;
  }

  // Unit tests cover the values of floats.
  bool number() {
    const std::string token = text.substr(at, text.find_first_of(" \t\r\n,]}", at) - at);
    const bool is_float = token.find_first_of(".eE") != token.npos;
    std::uint32_t value = 0;
    std::size_t i = token[0] == '-' ? 1 : 0;
    const auto digits = [&] {
      for (; token[i] >= '0' && token[i] <= '9'; ++i) {
        value = value * 10 + static_cast<std::uint32_t>(token[i] - '0');
      }
    };
    digits();
    if (token[i] == '.') ++i, digits();
    if (token[i] == 'e' || token[i] == 'E') {
      if (++i; token[i] == '-' || token[i] == '+') ++i;
      digits();
    }
    if (i != token.size()) return fail(at, is_float ? "Bad float number" : "Bad integer number");
    if (token[0] == '-') value = 0 - value;
    return add(is_float ? "float" : std::to_string(static_cast<std::int32_t>(value)), i);
  }

  bool add(const std::string& picture, std::size_t length) {
    ++values;
    lines += line(open.size(), std::exchange(name, {}), picture);
    return (at += length) > 0;
  }

  bool fail(std::size_t position, const char* description) {
    error = description;
    error_position = position;
    return false;
  }

  const std::string text;
  std::size_t at = 0, error_position = 0, values = 0;
  std::string lines, open, error;  // `open` has the brackets that are open
  optional_text name;
};

std::string picture_of(const json_node& node) {
  constexpr const char* pictures[] = {"null", "{", "[", "", "", "float", "true"};
  require(node.text_length == (node.kind == kind_string ? std::strlen(node.value.string) : 0),
          "the length is that of the text");
  if (node.kind == kind_string) return '"' + std::string(node.value.string) + '"';
  if (node.kind == kind_int) return std::to_string(node.value.integer);
  return node.kind == kind_bool && node.value.boolean == 0 ? "false" : pictures[node.kind];
}

// The same lines from a tree, which may be deep.
std::string lines_of(const json_node* node) {
  std::string lines;
  for (std::size_t depth = 0; node != nullptr;) {
    const json_node* const parent = node->parent;
    require(parent == nullptr || (node == parent->last_child) == (node->next_sibling == nullptr),
            "a container knows its last child");
    const auto name = node->name != nullptr ? optional_text(node->name) : std::nullopt;
    lines += line(depth, name, picture_of(*node));
    if (node->first_child != nullptr) {
      node = node->first_child, ++depth;
      continue;
    }
    while (node != nullptr && node->next_sibling == nullptr) node = node->parent, --depth;
    if (node != nullptr) node = node->next_sibling;
  }
  return lines;
}

void check_text(const std::string& text) {
  const second_reading expected(text);
  std::string source = text;
  const char *position = nullptr, *description = "";
  scoped_node_arena arena;
  if (text.size() % 4 == 0) arena.memory_left = (1 + text.size() % 32) * arena.block_size;
  const std::size_t room = arena.memory_left / arena.block_size *
                           ((arena.block_size - sizeof(arena_block)) / sizeof(json_node));
  const int width = std::min(string_marks_width, static_cast<int>(text.size()) % 3 * 16);
  const json_node* const root =
      json_parse(source.data(), source.size(), position, description, arena, width);
  const bool too_many = description == std::string_view("Too many values");
  require(too_many ? expected.values >= room : expected.values <= room, "values are bounded");
  require(too_many || description == expected.error, "the text has this error, or none");
  if (position != nullptr && !too_many) {
    require(position - source.data() == static_cast<std::ptrdiff_t>(expected.error_position),
            "the error is where it was found");
    require((text[0] != '{' && text[0] != '[') || to_strict_json(text, firefox_json).fault,
            "RFC 8259 is read");
  }
  require(position == nullptr || root == nullptr, "an error leaves no tree");
  require(position != nullptr || lines_of(root) == expected.lines, "the tree is that of the text");

  const std::string written = '[' + json_quote(text) + ']';
  require(!to_strict_json(written, firefox_json).fault, "what is written is JSON");
  require(second_reading(written).lines == line(0, {}, "[") + line(1, {}, '"' + text + '"'),
          "what is written is read");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = unrolled(text_of(data, size));
  std::string_view input = text;
  do check_text(std::string(take_text(input)).c_str());
  while (!input.empty());
  return 0;
}
