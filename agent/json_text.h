// A JSON text that people write: its values, and where in it something is wrong.
#pragma once

#include <string>
#include <string_view>

#include "json/parser.h"

class json_text {
 public:
  // Keeps the view.
  explicit json_text(std::string_view text) : original_(text), parsed_(text) {}

  json_text(const json_text&) = delete;
  json_text& operator=(const json_text&) = delete;

  // Null if the text is no JSON, which problem() then tells. The values live as long as this object
  // and the arena.
  const json_node* parse(node_arena& arena);

  // False, with a problem noted, unless the value is of the kind; `what` is for people.
  bool expect(const json_node& node, json_kind kind, const char* what);

  // Notes what is wrong with the value, and where it is. Always false.
  bool fail(const json_node& node, std::string_view what);

  // "LINE:COLUMN: " and what is wrong there; empty as long as nothing is.
  const std::string& problem() const { return problem_; }

  static std::string_view name_of(const json_node& node) {
    return node.name == nullptr ? std::string_view() : std::string_view(node.name);
  }

 private:
  const char* place_of(const json_node& node) const;
  void note(const char* place, std::string_view what);

  std::string_view original_;
  std::string parsed_;
  std::string problem_;
};
