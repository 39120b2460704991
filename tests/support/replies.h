// The replies in what a host has written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct received_reply {
  std::string text;
  std::vector<std::size_t> sizes;  // of the envelopes since the reply before
};

// All replies in the frames, which may alternate. `complaint` tells what isn't whole, numbered and
// of a host; it is empty if everything is.
std::vector<received_reply> replies_in(std::string_view frames, std::string& complaint);
