#include <atomic>

#include "platform/platform.h"

namespace platform {

// The runtime's own generator keeps its state per thread and starts all threads alike, so that two
// threads would draw the same numbers. This is its sequence, shared by all.
int random_number() {
  static std::atomic<std::uint32_t> state{1};
  std::uint32_t previous = state.load(std::memory_order_relaxed);
  std::uint32_t next = 0;
  do {
    next = previous * 214013 + 2531011;
  } while (!state.compare_exchange_weak(previous, next, std::memory_order_relaxed));
  return static_cast<int>(next >> 16 & 0x7FFF);
}

}  // namespace platform
