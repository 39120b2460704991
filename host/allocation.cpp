// How the process gets and gives back memory, in place of the runtime's operators.
//
// Whatever is given back is overwritten first: frames, messages, replies and every copy that was
// made of them on the way hold passwords, and must not lie about until their memory is used again.
// Doing it here misses no container that grows and no temporary.
//
// Where memory can't be had and the caller doesn't test for it, the process ends at once. It can
// rely on nothing any more, and no exception may reach the library.

#include <algorithm>
#include <cstdlib>
#include <new>

#include "host/exit_value.h"
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

// Never inlined, or the compiler would see the block's own size and take the rest of the room that
// it has for foreign memory.
[[gnu::noinline]] void operator delete(void* memory) noexcept { platform::free_wiped(memory); }
void operator delete(void* memory, std::size_t) noexcept { ::operator delete(memory); }
void operator delete[](void* memory) noexcept { ::operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { ::operator delete(memory); }
