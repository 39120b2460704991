#include "agent/json_text.h"

#include <algorithm>

const json_node* json_text::parse(node_arena& arena) {
  const std::size_t start = std::min(parsed_.find_first_not_of(" \t\r\n"), parsed_.size());
  const char* errorPos = parsed_.data() + start;
  const char* errorDesc = "the file is empty";
  const json_node* root = json_parse(parsed_.data() + start, errorPos, errorDesc, arena);
  // The parser would take a NUL for the end of the text.
  const std::size_t nul = original_.find('\0');
  if (root != nullptr && nul != std::string_view::npos) {
    errorPos = parsed_.data() + nul;
    errorDesc = "a NUL byte can't be part of the file";
    root = nullptr;
  }
  if (root == nullptr) note(errorPos, errorDesc);
  return root;
}

bool json_text::expect(const json_node& node, json_kind kind, const char* what) {
  return node.kind == kind || fail(node, std::string(what) + " is needed here");
}

bool json_text::fail(const json_node& node, std::string_view what) {
  note(place_of(node), what);
  return false;
}

// Some place in the text that belongs to the node, or to the nearest one around it: names and texts
// lie where they were parsed, of other values nothing is left.
const char* json_text::place_of(const json_node& node) const {
  for (const json_node* n = &node; n != nullptr; n = n->parent) {
    if (n->name != nullptr) return n->name;
    if (n->kind == kind_string) return n->value.string;
    if (n->first_child != nullptr && n->first_child->name != nullptr) return n->first_child->name;
  }
  return parsed_.data();
}

// Counts in the original: decoding may have put line ends into the parsed text.
void json_text::note(const char* place, std::string_view what) {
  const std::string_view before =
      original_.substr(0, static_cast<std::size_t>(place - parsed_.data()));
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const std::size_t column = before.size() - (before.rfind('\n') + 1);
  problem_ = std::to_string(lines + 1) + ':' + std::to_string(column + 1) + ": ";
  problem_ += what;
}
