#include "bridge/notify_gate.h"

#include <thread>

bool notify_gate::enter() {
  std::uint32_t state = state_.load(std::memory_order_relaxed);
  while ((state & closed_mark) == 0) {
    if (state_.compare_exchange_weak(state, state + 1, std::memory_order_acquire)) return true;
  }
  // A thread that tries again and again leaves the processor to those inside.
  std::this_thread::yield();
  return false;
}

// After the closing, leaving takes the lock: once the closer has seen an empty gate, no thread is
// about to wake it.
void notify_gate::leave() {
  std::uint32_t state = state_.load(std::memory_order_relaxed);
  while ((state & closed_mark) == 0) {
    if (state_.compare_exchange_weak(state, state - 1, std::memory_order_release)) return;
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  if (state_.fetch_sub(1, std::memory_order_release) == closed_mark + 1) emptied_.notify_all();
}

bool notify_gate::close(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  state_.fetch_or(closed_mark, std::memory_order_relaxed);
  return emptied_.wait_for(
      lock, timeout, [this] { return state_.load(std::memory_order_acquire) == closed_mark; });
}
