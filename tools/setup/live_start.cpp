#include "tools/setup/live_start.h"

#include <algorithm>

#include "transport/frame_format.h"

namespace {

// A host ends within a second after its input; a slow machine gets more time.
constexpr std::chrono::seconds timeout{5};

// How long to wait for its output before checking on the host itself.
constexpr std::chrono::milliseconds read_step{10};

// More than a pipe takes while nobody reads from it.
constexpr std::size_t input_size = 80'000;

// Frames that hold no message, as the host leaves unread what isn't in its envelope.
std::string idle_input() {
  const std::string envelope = "{}" + std::string(frame_length_limit - 3, ' ');
  const auto size = static_cast<frame_length>(envelope.size());
  std::string input;
  while (input.size() < input_size) {
    input.append(reinterpret_cast<const char*>(&size), sizeof size).append(envelope);
  }
  return input;
}

}  // namespace

live_start start_host(const std::string& path, const std::vector<std::string>& arguments,
                      platform::bare_scripts scripts) {
  live_start result;
  const auto begin = std::chrono::steady_clock::now();
  const auto time_left = [deadline = begin + timeout] {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(left, std::chrono::milliseconds(0));
  };
  const auto host = platform::child_process::start(path, arguments, result.error, scripts);
  if (host == nullptr) return result;
  const std::string input = idle_input();
  result.took_input = host->write(input.data(), input.size(), time_left());
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
