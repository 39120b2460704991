// The command line of cfcheck.
#pragma once

#include <chrono>
#include <optional>
#include <string>

struct check_options {
  std::string library;                      // as given
  std::chrono::milliseconds wait{500};      // for notifications after the last request
  std::chrono::milliseconds timeout{5000};  // for each call of the library
  bool json = false;
};

// Nothing if the program is to go on. Otherwise the exit value, after printing the help, the
// version or what is wrong with the arguments.
std::optional<int> parse_check_options(int argc, char** argv, check_options& options);
