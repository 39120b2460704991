// A start of the host, as a browser does it, whose input holds nothing to do and ends soon.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/child_process.h"

struct live_start {
  std::optional<int> exit_value;  // nothing if it couldn't be started or didn't end in time
  std::string error;              // why it couldn't be started; empty if it could
  bool took_input = false;        // what reads none can't be a host
  std::chrono::microseconds duration{0};
};

live_start start_host(const std::string& path, const std::vector<std::string>& arguments,
                      platform::bare_scripts scripts);
