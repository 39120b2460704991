// Joins the pieces of inbound messages. A message travels as base64 text cut into pieces; each
// piece comes in an envelope with the message's id, and the last one carries the mark "final".
// Pieces are joined in order of arrival; ids may interleave. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Text of unfinished messages that is kept, in bytes over all ids. Far more than any page needs,
// and far below what the 32-bit lengths of the codecs can count.
constexpr std::size_t max_gathered_text = std::size_t{64} * 1024 * 1024;

// Unfinished messages that are kept: bounds what ids without text can take.
constexpr std::size_t max_unfinished_messages = 4096;

// Takes one envelope, a terminated text that is rewritten. 0 when the piece was stored, or when it
// closed its message and that was decoded: then `text` holds the decoded text up to its first NUL.
// 1 when the envelope was refused or the message couldn't be decoded; `text` stays untouched.
//
// A piece that would exceed a limit makes the store drop unfinished messages, those untouched
// longest first; one that can't fit even so is refused, and what its own message had gathered is
// dropped.
std::int32_t reassemble_fragment(char* frame, std::string& text);

// Bytes of text that unfinished messages hold at the moment; 0 again once the store is gone.
std::size_t gathered_text();
