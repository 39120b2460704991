// Pulls frames from standard input until one of them completes a message. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "transport/reassembly.h"

enum read_result : std::int32_t {
  read_complete = 0,   // `message` holds the decoded text, never empty
  read_end = 1,        // no whole header could be read: end of input, or a failed read
  read_too_long = 3,   // the header announces frame_length_limit or more
  read_no_memory = 4,  // no room for the frame
};

// Blocks until a message is complete or the input fails. Frames that only add a piece, and frames
// that are refused, are consumed on the way. `message` is touched only on read_complete; every
// other result leaves the stream out of use. `store` keeps what is unfinished.
std::int32_t read_message(std::string& message, std::FILE* input = stdin,
                          fragment_store& store = process_store());

// Whether a frame may still stand behind the message that read_message gave last: in `unread` more
// bytes of the input, and in what was read ahead of it. Any thread may ask.
bool has_to_serve(std::size_t unread);
