// The process's own operators new and delete.
//
// Memory is overwritten before it is given back. Frames, messages, replies and all their copies
// hold passwords, which must not stay in memory until somebody uses it again. The operators see
// every container that grows and every temporary.
//
// When there is no memory left and the caller doesn't test for that, the process ends at once: no
// exception may reach the library.

#include <algorithm>
#include <cstdlib>
#include <new>

#include "memory/allocation.h"
#include "memory/spare_memory.h"
#include "platform/platform.h"
#include "platform/wiping.h"

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(std::max<std::size_t>(size, 1));
}

void* operator new(std::size_t size) {
  void* const memory = ::operator new(size, std::nothrow);
  if (memory == nullptr) platform::leave_now(exit_no_memory);
  return memory;
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return ::operator new(size, tag);
}
void* operator new[](std::size_t size) { return ::operator new(size); }

// Never inlined: the compiler would know the size that was asked for, and warn of wiping the rest
// of the block, which the allocator may have made larger.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  const std::size_t size = platform::free_wiped(memory);
  if (size >= large_block_size) note_spare_memory(size);
}
void operator delete(void* memory, std::size_t) noexcept { ::operator delete(memory); }
void operator delete[](void* memory) noexcept { ::operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { ::operator delete(memory); }
