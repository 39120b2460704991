// Joins the pieces of inbound messages. A message travels as base64 text cut into pieces; each
// piece comes in an envelope with the message's id, and the last one carries the mark "final".
// Pieces are joined in order of arrival; ids may interleave. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Takes one envelope, a terminated text that is rewritten. 0 when the piece was stored, or when it
// closed its message and that was decoded: then `text` holds the decoded text up to its first NUL.
// 1 when the envelope was refused or the message couldn't be decoded; `text` stays untouched.
//
// A piece that would exceed a limit of fragment_store.h makes the store drop other unfinished
// messages, those untouched longest first. One that can't fit by itself is refused, and what its
// own message had gathered is dropped.
std::int32_t reassemble_fragment(char* frame, std::string& text);

// Bytes of text that unfinished messages hold at the moment; 0 again once the store is gone.
std::size_t gathered_text();
