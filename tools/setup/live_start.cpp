#include "tools/setup/live_start.h"

#include <algorithm>

#include "platform/child_process.h"

namespace {

// A host ends within a second after its input; a slow machine gets more time.
constexpr std::chrono::seconds timeout{5};

// How long to wait for its output before checking on the host itself.
constexpr std::chrono::milliseconds read_step{10};

}  // namespace

live_start start_host(const std::string& path, const std::vector<std::string>& arguments) {
  live_start result;
  const auto begin = std::chrono::steady_clock::now();
  const auto time_left = [deadline = begin + timeout] {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(left, std::chrono::milliseconds(0));
  };
  const auto host = platform::child_process::start(path, arguments, result.error);
  if (host == nullptr) return result;
  host->close_input();
  // Reads the host's output, so that a full pipe can't block it, but not for ever and not to the
  // end of the output: an agent that it has started may keep that open long after the host is gone.
  char bytes[4096];
  do {
    const auto count = host->read(bytes, sizeof bytes, std::min(time_left(), read_step));
    const bool output_ended = count == std::size_t{0};
    result.exit_value = host->wait(output_ended ? time_left() : std::chrono::milliseconds(0));
  } while (!result.exit_value.has_value() && time_left().count() > 0);
  result.duration = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  return result;
}
