// A start of the host as a browser does it, with an input that ends at once.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

struct live_start {
  std::optional<int> exit_value;  // nothing if it couldn't be started or didn't end in time
  std::string error;              // why it couldn't be started; empty if it could
  std::chrono::microseconds duration{0};
};

live_start start_host(const std::string& path, const std::vector<std::string>& arguments);
