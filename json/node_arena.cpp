#include "json/node_arena.h"

#include <algorithm>
#include <new>

#include "memory/kept_blocks.h"

static_assert(sizeof(arena_block) % alignof(json_node) == 0);
static_assert(default_arena_block_size == kept_block_size);

namespace {

void* take_memory(std::uint64_t size) {
  return size == default_arena_block_size ? take_block() : ::operator new(size);
}

void give_back(arena_block* block) {
  if (block->size == default_arena_block_size) {
    give_block_back(block);
  } else {
    ::operator delete(block);
  }
}

}  // namespace

bool arena_add_block(node_arena& allocator) {
  const std::uint64_t size =
      std::max<std::uint64_t>(allocator.block_size, sizeof(arena_block) + sizeof(json_node));
  if (size > allocator.memory_left) return false;
  allocator.memory_left -= size;
  void* const memory = take_memory(size);
  allocator.head = new (memory)
      arena_block{size, sizeof(arena_block), static_cast<char*>(memory), allocator.head};
  return true;
}

void arena_release(node_arena& allocator) {
  while (allocator.head != nullptr) {
    arena_block* const block = allocator.head;
    allocator.head = block->next;
    give_back(block);
  }
  allocator.memory_left = max_arena_memory;
}
