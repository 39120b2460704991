#include "tools/tap/relay.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <thread>
#include <vector>

#include "platform/raw_streams.h"

namespace {

using std::chrono::milliseconds;

// The capacity of a pipe.
constexpr std::size_t block_size = std::size_t{64} * 1024;

// How often to check on the host itself: a program that it has started may keep its output open.
constexpr milliseconds look_step{100};

// The same, once there is no output to wait for.
constexpr milliseconds end_step{20};

}  // namespace

int relay::run() {
  // The browser may keep its side open when the host is gone. Then only the end of this process
  // ends the wait for it.
  std::thread([this] { pass_input(); }).detach();
  return pass_output();
}

void relay::pass_input() {
  std::vector<char> block(block_size);
  while (const std::size_t count = platform::read_standard_input(block.data(), block.size())) {
    // Recorded first, or the host's answer might come before the request. This takes no longer than
    // a copy.
    note(false, {block.data(), count});
    if (!host_.write(block.data(), count)) break;
  }
  host_.close_input();
  platform::close_standard_input();
}

int relay::pass_output() {
  std::vector<char> block(block_size);
  std::optional<int> exit_value;
  for (;;) {
    const auto count = host_.read(block.data(), block.size(), look_step);
    if (count == std::size_t{0}) break;
    if (count.has_value()) {
      if (!platform::write_standard_output(block.data(), *count)) break;
      note(true, {block.data(), *count});
    } else {
      exit_value = host_.wait(milliseconds(0));
      if (exit_value.has_value()) break;
    }
  }
  host_.close_output();
  platform::close_standard_output();
  while (!exit_value.has_value()) {
    exit_value = host_.wait(milliseconds(0));
    if (!exit_value.has_value()) std::this_thread::sleep_for(end_step);
  }
  return *exit_value;
}
