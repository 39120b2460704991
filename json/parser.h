// In-place JSON parser: one pass, no recursion, no copy of any text.
//
// The dialect is looser than RFC 8259 in its punctuation (commas and colons are neither required
// nor counted, and a key may stand in front of any value) and stricter at the root, which must be
// an object or array with nothing before it. docs/protocol.md describes it in full.
#pragma once

#include "json/node_arena.h"

// Parses the terminated text `source` and returns the root, or null on an error or an empty text.
//
// The text is rewritten: keys and strings are decoded where they lie, each with a NUL behind it,
// and the tree points at them. All nodes come from `allocator`, also those of a parse that fails.
//
// On an error, and only then, `errorPos` points into `source` at the place of it and `errorDesc` at
// a constant text. An empty text writes neither. More nodes than max_arena_memory holds are an
// error like any other.
json_node* json_parse(char* source, const char*& errorPos, const char*& errorDesc,
                      node_arena& allocator);
