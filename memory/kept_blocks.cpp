#include "memory/kept_blocks.h"

#include <atomic>
#include <new>

#include "memory/spare_memory.h"
#include "platform/wiping.h"

namespace {

// Under the address sanitizer no block is kept, so that it notices the use of one that was given
// back.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool keeps_blocks = false;
#elif !defined(__has_feature)
constexpr bool keeps_blocks = true;
#elif __has_feature(address_sanitizer)
constexpr bool keeps_blocks = false;
#else
constexpr bool keeps_blocks = true;
#endif

// Enough for a page of three hundred inputs.
constexpr std::size_t most_kept = 512;

// take_block_at_hand makes this many blocks before any has been given back. A page of forty inputs
// needs fewer.
constexpr std::size_t most_made = 128;

// One store for all threads: thread-local storage isn't safe to use while a thread ends on every
// system. A thread that finds the store busy doesn't wait; it asks the system for memory instead.
constinit std::atomic_flag busy;
std::size_t count = 0;
std::size_t made = 0;
void* blocks[most_kept];

bool keep(void* block) {
  if (!keeps_blocks || busy.test_and_set(std::memory_order_acquire)) return false;
  const bool fits = count < most_kept;
  if (fits) blocks[count++] = block;
  busy.clear(std::memory_order_release);
  return fits;
}

}  // namespace

void* take_block_at_hand() {
  if (!keeps_blocks || busy.test_and_set(std::memory_order_acquire)) return nullptr;
  void* const kept = count > 0 ? blocks[--count] : nullptr;
  const bool makes_one = kept == nullptr && made < most_made;
  if (makes_one) ++made;
  busy.clear(std::memory_order_release);
  return makes_one ? ::operator new(kept_block_size) : kept;
}

void* take_block() {
  void* const block = take_block_at_hand();
  return block != nullptr ? block : ::operator new(kept_block_size);
}

void give_block_back(void* block, std::size_t used) {
  platform::wipe(block, used);
  if (keep(block)) return;
  ::operator delete(block);
  note_spare_memory(kept_block_size);
}
