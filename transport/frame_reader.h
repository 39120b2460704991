// Pulls frames from standard input until one of them completes a message. Main thread only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

enum read_result : std::int32_t {
  read_complete = 0,   // `message` holds the decoded text, never empty
  read_end = 1,        // no whole header could be read: end of input, or a failed read
  read_too_long = 3,   // the header announces frame_length_limit or more
  read_no_memory = 4,  // no room for the frame
};

// Blocks until a message is complete or the input fails. Frames that only add a piece, and frames
// that are refused, are consumed on the way. `message` is touched only on read_complete; every
// other result leaves the stream out of use.
std::int32_t read_message(std::string& message, std::FILE* input = stdin);
