// Cuts a request into the envelopes of its frames, as an extension does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "transport/frame_format.h"

// Limits of a whole envelope in bytes. The smaller one leaves room for a piece after any id and
// number that is used here.
constexpr std::size_t min_request_envelope = 64;
constexpr std::size_t max_request_envelope = frame_length_limit - 1;

// The longest request, in bytes. Its base64 text is the most that the host keeps of an unfinished
// message.
constexpr std::size_t max_request_size = std::size_t{48} * 1024 * 1024;

class request_cutter {
 public:
  // Requires a text of at most max_request_size and an envelope size between the limits.
  request_cutter(std::string_view text, std::string id, std::size_t envelope_size);

  // Makes the next envelope; false if the one before was the last.
  bool next(std::string& envelope);

 private:
  const std::string id_;
  std::string encoded_;
  std::size_t room_;
  std::size_t at_ = 0;
  unsigned number_ = 0;
  bool done_ = false;
};

// The frame that carries `envelope`: its length and its text.
std::string make_frame(std::string_view envelope);
