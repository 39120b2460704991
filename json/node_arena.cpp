#include "json/node_arena.h"

#include <algorithm>
#include <new>

static_assert(sizeof(arena_block) % alignof(json_node) == 0);

bool arena_add_block(node_arena& allocator) {
  const std::uint64_t size =
      std::max<std::uint64_t>(allocator.block_size, sizeof(arena_block) + sizeof(json_node));
  if (size > allocator.memory_left) return false;
  allocator.memory_left -= size;
  void* const memory = ::operator new(size);
  allocator.head = new (memory)
      arena_block{size, sizeof(arena_block), static_cast<char*>(memory), allocator.head};
  return true;
}

void arena_release(node_arena& allocator) {
  while (allocator.head != nullptr) {
    arena_block* const block = allocator.head;
    allocator.head = block->next;
    ::operator delete(block);
  }
  allocator.memory_left = max_arena_memory;
}
