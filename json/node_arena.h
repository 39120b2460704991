// Block arena that owns the nodes of one parse. Nothing in it is freed singly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "json/node.h"

// Header at the start of each block; the nodes follow it.
struct arena_block {
  std::uint64_t size;  // bytes of the whole block, this header included
  std::uint64_t used;  // offset of the first free byte from the block's start
  char* base;          // the block's own address
  arena_block* next;   // the block that was the head before this one
};

struct node_arena {
  arena_block* head;         // newest block; null while the arena is empty
  std::uint64_t block_size;  // bytes of a new block, header included
};

// A small message fits one block.
constexpr std::uint64_t default_arena_block_size = 1024;

// Puts a new block in front of the others. The process ends when there is no memory left, since no
// reader of a tree could go on without a node.
void arena_add_block(node_arena& allocator);

// Room for one node, not initialised, good until arena_release. Never null.
inline json_node* arena_alloc(node_arena& allocator) {
  if (allocator.head == nullptr ||
      allocator.head->used + sizeof(json_node) > allocator.head->size) {
    arena_add_block(allocator);
  }
  arena_block& block = *allocator.head;
  void* const room = block.base + block.used;
  block.used += sizeof(json_node);
  return new (room) json_node;
}

// Frees all blocks; harmless on an empty arena.
void arena_release(node_arena& allocator);

// An empty arena of the default block size that is released at the end of its scope.
struct scoped_node_arena : node_arena {
  scoped_node_arena() : node_arena{nullptr, default_arena_block_size} {}
  ~scoped_node_arena() { arena_release(*this); }
  scoped_node_arena(const scoped_node_arena&) = delete;
  scoped_node_arena& operator=(const scoped_node_arena&) = delete;
};
