// The command line of cfext.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/request_cutter.h"

extern const char* const cfext_usage;

struct cfext_options {
  std::string host;                   // empty: cfhost beside cfext
  std::string file;                   // requests, one per line; "-" is standard input
  std::string capture;                // to decode; "-" is standard input, empty: none
  std::vector<std::string> requests;  // go before `file`
  std::size_t frame_size = max_request_envelope;
  std::size_t wait_ms = 200;
  bool frames = false;
  bool echo = false;
  bool raw = false;
  bool help = false;
};

// False, with the reason in `error`, when the arguments (without the program's name) can't be used.
bool parse_options(const std::vector<std::string>& arguments, cfext_options& options,
                   std::string& error);
