// Joins the pieces of inbound messages. A message travels as base64 text cut into pieces; each
// piece comes in an envelope with the message's id, and the last one carries the mark "final".
// Pieces are joined in order of arrival; ids may interleave. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class fragment_store;

// The store of the process, made when it is first asked for.
fragment_store& process_store();

// Takes one envelope, a terminated text that is rewritten. Returns 0 if the piece was stored, or if
// it closed its message: then `text` holds the decoded text up to its first NUL. Returns 1, with
// `text` untouched, if the envelope was refused.
//
// A piece that would exceed a limit of fragment_store.h makes the store drop other unfinished
// messages, those untouched longest first. A piece that can't fit by itself is refused, and its own
// message is dropped. Pieces of a dropped message are refused, the closing one included.
std::int32_t reassemble_fragment(char* frame, std::string& text,
                                 fragment_store& store = process_store());

// The same for an envelope whose size is known.
std::int32_t reassemble_fragment(char* frame, std::size_t size, std::string& text,
                                 fragment_store& store);
