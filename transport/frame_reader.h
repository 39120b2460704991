// Pulls frames from standard input until one of them completes a message. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "transport/reassembly.h"

enum read_result : std::int32_t {
  read_complete = 0,   // `message` holds the decoded text, never empty
  read_end = 1,        // end of input, or a failed read, before a whole header
  read_too_long = 3,   // the header announces frame_length_limit or more
  read_no_memory = 4,  // no room for the frame
};

// Blocks until a message is complete or the input fails. Frames that only add a piece, and frames
// that are refused, are consumed on the way. `message` is set only on read_complete; after any
// other result the stream can't be used any more. `store` keeps unfinished messages.
std::int32_t read_message(std::string& message, std::FILE* input = stdin,
                          fragment_store& store = process_store());

// Whether there may be another frame after the message that read_message returned last: in `unread`
// more bytes of the input, or in what was read ahead of them. Any thread may ask.
bool has_to_serve(std::size_t unread);
