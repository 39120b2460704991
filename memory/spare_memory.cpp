#include "memory/spare_memory.h"

#include <atomic>

#include "platform/wiping.h"

namespace {

constexpr std::size_t worth_a_call = std::size_t{1024} * 1024;

constinit std::atomic<std::size_t> spare_memory{0};

}  // namespace

void note_spare_memory(std::size_t size) {
  spare_memory.fetch_add(size, std::memory_order_relaxed);
}

void give_spare_memory_back() {
  if (spare_memory.load(std::memory_order_relaxed) < worth_a_call) return;
  spare_memory.store(0, std::memory_order_relaxed);
  platform::return_free_memory();
}
