// One value of a parsed JSON text. Nodes live in a node_arena; keys and strings lie in the text
// that was parsed. A tree is valid as long as both exist.
#pragma once

#include <cstdint>
#include <string_view>

enum json_kind : std::int32_t {
  kind_null = 0,
  kind_object = 1,
  kind_array = 2,
  kind_string = 3,
  kind_int = 4,
  kind_float = 5,
  kind_bool = 6,
};

union json_value {
  const char* string;    // kind_string: decoded and terminated; the first NUL ends it
  std::int32_t integer;  // kind_int
  float number;          // kind_float
  std::int32_t boolean;  // kind_bool: 1 or 0
};
static_assert(sizeof(json_value) == 8);

struct json_node {
  json_node* parent;        // null for the root
  json_node* next_sibling;  // null for the last child
  json_node* first_child;   // null unless this is an object or array with children
  json_node* last_child;    // where the next child goes
  const char* name;         // the key, or null for a value that no key preceded
  json_value value;         // zero for null, objects and arrays
  json_kind kind;
  std::uint32_t text_length;  // kind_string: bytes before the terminator; else zero
};
static_assert(sizeof(json_node) == 56);

// The decoded text of a kind_string node.
inline std::string_view text_of(const json_node& node) {
  return {node.value.string, node.text_length};
}

// The children of a node in the order of the text:
//
//   for (const json_node& child : children_of(node))
class json_children {
 public:
  class iterator {
   public:
    explicit iterator(const json_node* at) : at_(at) {}
    const json_node& operator*() const { return *at_; }
    iterator& operator++() {
      at_ = at_->next_sibling;
      return *this;
    }
    bool operator!=(const iterator& other) const { return at_ != other.at_; }

   private:
    const json_node* at_;
  };

  explicit json_children(const json_node& parent) : first_(parent.first_child) {}
  iterator begin() const { return iterator(first_); }
  iterator end() const { return iterator(nullptr); }

 private:
  const json_node* first_;
};

inline json_children children_of(const json_node& node) { return json_children(node); }
