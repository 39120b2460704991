// The command line of cfext.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/request_cutter.h"

struct cfext_options {
  std::string host;                   // empty: cfhost beside cfext, or as recorded
  std::string file;                   // requests, one per line; "-" is standard input
  std::string capture;                // to decode; "-" is standard input, empty: none
  std::string replay;                 // a capture to play; "-" is standard input, empty: none
  std::vector<std::string> requests;  // go before `file`
  std::size_t frame_size = max_request_envelope;
  std::size_t wait_ms = 200;
  bool frames = false;
  bool echo = false;
  bool raw = false;
};

// Nothing if the program is to go on. Otherwise the exit value, after printing the help, the
// version or what is wrong with the arguments.
std::optional<int> parse_cfext_options(int argc, char** argv, cfext_options& options);
