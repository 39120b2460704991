// In-place JSON parser: one pass, no recursion, no copy of any text.
//
// The dialect is looser than RFC 8259 in its punctuation (commas and colons are neither required
// nor counted, and a key may precede any value) and stricter at the root, which must be an object
// or array with nothing before it. docs/protocol.md describes it in full.
#pragma once

#include <cstddef>

#include "json/node_arena.h"

// Parses the terminated text `source` and returns the root, or null on an error or an empty text.
//
// The text is rewritten: keys and strings are decoded where they lie, each with a NUL after it, and
// the tree points at them. All nodes come from `allocator`, including those of a parse that fails.
//
// On an error, and only then, `errorPos` is set to the place of the error in `source` and
// `errorDesc` to a constant text. An empty text sets neither. More nodes than max_arena_memory
// holds are an error like any other.
json_node* json_parse(char* source, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator);

// The same for a text whose size is known: source[size] is a NUL, and the first one ends the text.
json_node* json_parse(char* source, std::size_t size, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator);

// The same with vectors of this width, at most string_marks_width; the result doesn't depend on it.
json_node* json_parse(char* source, std::size_t size, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator, int width);

// A parsed text with the arena of its nodes; the text itself is the caller's and is rewritten.
class json_document {
 public:
  explicit json_document(char* source)
      : root_(json_parse(source, error_position_, error_text_, arena_)) {}
  json_document(char* source, std::size_t size)
      : root_(json_parse(source, size, error_position_, error_text_, arena_)) {}

  // Null for an empty text and for one that isn't JSON.
  const json_node* root() const { return root_; }

  // Where and what the error is; null if there is none.
  const char* error_position() const { return error_position_; }
  const char* error_text() const { return error_text_; }

 private:
  scoped_node_arena arena_;
  const char* error_position_ = nullptr;
  const char* error_text_ = nullptr;
  const json_node* root_;
};
