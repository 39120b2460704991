#include "json/node_arena.h"

#include <algorithm>
#include <new>

#include "json/spare_blocks.h"
#include "platform/wiping.h"

static_assert(sizeof(arena_block) % alignof(json_node) == 0);

namespace {

// Of the default size, as many as a page of four hundred inputs takes. They are wiped like all
// memory that is given back, for numbers lie in the nodes.
constinit spare_blocks<256> spare;

void* take_block(std::uint64_t size) {
  void* const kept = size == default_arena_block_size ? spare.take() : nullptr;
  return kept != nullptr ? kept : ::operator new(size);
}

void give_back(arena_block* block) {
  if (block->size == default_arena_block_size) {
    platform::wipe(block, block->used);
    if (spare.keep(block)) return;
  }
  ::operator delete(block);
}

}  // namespace

bool arena_add_block(node_arena& allocator) {
  const std::uint64_t size =
      std::max<std::uint64_t>(allocator.block_size, sizeof(arena_block) + sizeof(json_node));
  if (size > allocator.memory_left) return false;
  allocator.memory_left -= size;
  void* const memory = take_block(size);
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
