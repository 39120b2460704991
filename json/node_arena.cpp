#include "json/node_arena.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "memory/allocation.h"
#include "memory/kept_blocks.h"
#include "memory/spare_memory.h"
#include "platform/platform.h"
#include "platform/wiping.h"

static_assert(sizeof(arena_block) % alignof(json_node) == 0);
static_assert(default_arena_block_size == kept_block_size);

// Memory for many blocks. The alignment of its header keeps the blocks after it aligned.
struct alignas(16) arena_slab {
  arena_slab* older;
  arena_block* head_before;  // the newest block outside
  std::size_t size;          // this header included
  std::size_t used;
  bool holds_numbers;
};

namespace {

// A message of a few values needs no more than these.
constexpr std::uint64_t memory_without_slabs = 2 * default_arena_block_size;

constexpr std::size_t least_slab = std::size_t{8} * 1024;
constexpr std::size_t largest_slab = std::size_t{64} * 1024;

std::uint64_t memory_taken(const node_arena& allocator) {
  return max_arena_memory - allocator.memory_left;
}

// Not by operator new: its counterpart would wipe the whole slab when it is freed.
void add_slab(node_arena& allocator) {
  const std::size_t size =
      std::clamp(std::size_t{4} * memory_taken(allocator), least_slab, largest_slab);
  void* const memory = std::malloc(sizeof(arena_slab) + size);
  if (memory == nullptr) platform::leave_now(exit_no_memory);
  allocator.slabs = new (memory) arena_slab{allocator.slabs, allocator.head,
                                            sizeof(arena_slab) + size, sizeof(arena_slab), false};
}

void* cut_block(node_arena& allocator) {
  const arena_slab* const slab = allocator.slabs;
  if (slab == nullptr || slab->size - slab->used < default_arena_block_size) add_slab(allocator);
  arena_slab& newest = *allocator.slabs;
  void* const block = reinterpret_cast<char*>(&newest) + newest.used;
  newest.used += default_arena_block_size;
  return block;
}

void* take_memory(node_arena& allocator, std::uint64_t size) {
  if (size != default_arena_block_size) return ::operator new(size);
  return memory_taken(allocator) < memory_without_slabs ? take_block() : cut_block(allocator);
}

void give_back(arena_slab* slab) {
  const std::size_t size = slab->size;
  if (slab->holds_numbers) platform::wipe(slab, slab->used);
  std::free(slab);
  if (size > largest_slab) note_spare_memory(size);
}

void give_back(arena_block* block) {
  if (block->size == default_arena_block_size) {
    give_block_back(block, block->used);
  } else {
    ::operator delete(block);
  }
}

}  // namespace

bool arena_add_block(node_arena& allocator) {
  const std::uint64_t size =
      std::max<std::uint64_t>(allocator.block_size, sizeof(arena_block) + sizeof(json_node));
  if (size > allocator.memory_left) return false;
  void* const memory = take_memory(allocator, size);
  allocator.memory_left -= size;
  allocator.head = new (memory)
      arena_block{size, sizeof(arena_block), static_cast<char*>(memory), allocator.head};
  return true;
}

// Takes over what is left of the newest block.
void arena_nodes::find_room() {
  if (allocator_.head == nullptr) return;
  const arena_block& block = *allocator_.head;
  next_ = reinterpret_cast<json_node*>(block.base + block.used);
  left_ = (block.size - block.used) / sizeof(json_node);
}

void arena_nodes::leave_room() {
  if (allocator_.head == nullptr) return;
  arena_block& block = *allocator_.head;
  block.used = static_cast<std::uint64_t>(reinterpret_cast<char*>(next_) - block.base);
}

bool arena_nodes::add_room() {
  leave_room();
  if (!arena_add_block(allocator_)) return false;
  find_room();
  return true;
}

void arena_note_number(node_arena& allocator) {
  if (allocator.slabs != nullptr) allocator.slabs->holds_numbers = true;
}

void arena_release(node_arena& allocator) {
  while (allocator.slabs != nullptr) {
    arena_slab* const slab = allocator.slabs;
    allocator.head = slab->head_before;
    allocator.slabs = slab->older;
    give_back(slab);
  }
  while (allocator.head != nullptr) {
    arena_block* const block = allocator.head;
    allocator.head = block->next;
    give_back(block);
  }
  allocator.memory_left = max_arena_memory;
}
