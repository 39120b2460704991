#include "tools/message_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "json/parser.h"
#include "json/writer.h"
#include "tools/redaction.h"
#include "transport/codecs/text.h"

namespace {

bool is_container(const json_node& node) {
  return node.kind == kind_object || node.kind == kind_array;
}

// Well-formed UTF-8; joins the surrogates that the parser leaves apart.
std::string well_formed(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; })) {
    return std::string(text);
  }
  wide_string wide;
  std::string narrow;
  if (!utf8_to_wide(wide, text.data(), static_cast<std::uint32_t>(text.size()))) return {};
  return wide_to_utf8(narrow, wide) ? narrow : std::string();
}

std::string number_text(float number) {
  if (!std::isfinite(number)) return "null";
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(number));
  return text.data();
}

std::string scalar_text(const json_node& leaf) {
  switch (leaf.kind) {
    case kind_int:
      return std::to_string(leaf.value.integer);
    case kind_float:
      return number_text(leaf.value.number);
    case kind_bool:
      return leaf.value.boolean != 0 ? "true" : "false";
    default:
      return "null";
  }
}

// Goes through the tree without recursion, since a message may be nested as deep as it is long.
class tree_writer {
 public:
  explicit tree_writer(const text_rules& rules) : rules_(rules) {}

  std::string write(const json_node& root) {
    root_ = &root;
    const json_node* node = &root;
    while (node != nullptr) {
      put(*node);
      node = node->first_child != nullptr ? node->first_child : after(node);
    }
    out_.drop_last(',');
    return std::string(out_.str());
  }

 private:
  // Closes all containers that end with this node.
  const json_node* after(const json_node* node) {
    if (is_container(*node)) close(*node);
    while (node != root_ && node->next_sibling == nullptr) {
      node = node->parent;
      close(*node);
    }
    return node == root_ ? nullptr : node->next_sibling;
  }

  void close(const json_node& container) {
    json_end(out_, container.kind == kind_object ? '}' : ']');
    if (secret_ == &container) secret_ = nullptr;
  }

  void put(const json_node& node) {
    const bool is_member = &node != root_ && node.parent->kind == kind_object;
    if (is_member) {
      out_ << json_quote(well_formed(node.name == nullptr ? "" : node.name)) << ':';
    }
    if (is_container(node)) {
      if (secret_ == nullptr && is_secret(node)) secret_ = &node;
      json_begin(out_, node.kind == kind_object ? '{' : '[');
    } else {
      put_leaf(node);
    }
  }

  bool is_secret(const json_node& node) const {
    return rules_.hide_values && is_secret_name(node.name);
  }

  void put_leaf(const json_node& leaf) {
    const bool is_text = leaf.kind == kind_string;
    if (rules_.level && is_passing_name(leaf.name)) {
      out_ << R"("<any>",)";
    } else if (leaf.kind != kind_null && (secret_ != nullptr || is_secret(leaf))) {
      const std::size_t length = is_text ? leaf.text_length : scalar_text(leaf).size();
      out_ << json_quote(hidden_mark(length, rules_.level)) << ',';
    } else {
      out_ << (is_text ? json_quote(shown_text(leaf)) : scalar_text(leaf)) << ',';
    }
  }

  std::string shown_text(const json_node& leaf) const {
    // For every reader the first NUL ends a text.
    std::string text = well_formed(leaf.value.string);
    return rules_.hide_values ? bare_address(text, is_address_name(leaf.name)) : text;
  }

  const text_rules& rules_;
  const json_node* root_ = nullptr;
  const json_node* secret_ = nullptr;  // the container whose whole content is hidden
  pair_stream out_;
};

}  // namespace

std::string node_text(const json_node& root, const text_rules& rules) {
  return tree_writer(rules).write(root);
}

std::optional<std::string> message_text(std::string message, const text_rules& rules,
                                        std::string& error) {
  const char* position = nullptr;
  const char* description = "it is empty";
  scoped_node_arena nodes;
  const json_node* const root = json_parse(message.data(), position, description, nodes);
  if (root != nullptr) return node_text(*root, rules);
  error = std::string("no message: ") + description;
  return std::nullopt;
}
