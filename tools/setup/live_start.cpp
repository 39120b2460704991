#include "tools/setup/live_start.h"

#include <algorithm>

#include "platform/child_process.h"

namespace {

// A host ends within a second of its input; a slow machine gets some more.
constexpr std::chrono::seconds patience{5};

}  // namespace

live_start start_host(const std::string& path, const std::vector<std::string>& arguments) {
  live_start result;
  const auto begin = std::chrono::steady_clock::now();
  const auto time_left = [deadline = begin + patience] {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(left, std::chrono::milliseconds(0));
  };
  const auto host = platform::child_process::start(path, arguments, result.error);
  if (host == nullptr) return result;
  host->close_input();
  // What it has to say is taken, lest a full pipe hold it up, but not without end.
  char bytes[4096];
  while (host->read(bytes, sizeof bytes, time_left()).value_or(0) > 0 && time_left().count() > 0) {
  }
  result.exit_value = host->wait(time_left());
  result.duration = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  return result;
}
