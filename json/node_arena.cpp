#include "json/node_arena.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <new>

static_assert(sizeof(arena_block) % alignof(json_node) == 0);

namespace {

void add_block(node_arena& allocator) {
  const std::uint64_t size =
      std::max<std::uint64_t>(allocator.block_size, sizeof(arena_block) + sizeof(json_node));
  void* const memory = std::malloc(size);
  if (memory == nullptr) std::terminate();
  allocator.head = new (memory)
      arena_block{size, sizeof(arena_block), static_cast<char*>(memory), allocator.head};
}

}  // namespace

json_node* arena_alloc(node_arena& allocator) {
  if (allocator.head == nullptr ||
      allocator.head->used + sizeof(json_node) > allocator.head->size) {
    add_block(allocator);
  }
  arena_block& block = *allocator.head;
  void* const room = block.base + block.used;
  block.used += sizeof(json_node);
  return new (room) json_node;
}

void arena_release(node_arena& allocator) {
  while (allocator.head != nullptr) {
    arena_block* const block = allocator.head;
    allocator.head = block->next;
    std::free(block);
  }
}
