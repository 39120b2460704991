// Block arena that owns the nodes of one parse. Nodes aren't freed one by one.
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

// Memory that the nodes of one parse may take, in bytes. A single character can ask for a node, so
// without a bound a text within its own limit could take fifty times its size. This is half as much
// again as the largest page needs if all its inputs are taken.
constexpr std::uint64_t max_arena_memory = std::uint64_t{64} * 1024 * 1024;

struct arena_slab;

struct node_arena {
  arena_block* head;         // newest block; null while the arena is empty
  std::uint64_t block_size;  // bytes of a new block, header included
  std::uint64_t memory_left = max_arena_memory;
  arena_slab* slabs = nullptr;  // what the blocks of a large text are cut from
};

// A small message fits one block.
constexpr std::uint64_t default_arena_block_size = 1024;

// Puts a new block in front of the others. False, without one, at the bound. The process ends if
// the system has no memory left: a reader couldn't go on without a node.
bool arena_add_block(node_arena& allocator);

// Room for one node, not initialised, valid until arena_release; null at the bound.
inline json_node* arena_alloc(node_arena& allocator) {
  if (allocator.head == nullptr ||
      allocator.head->used + sizeof(json_node) > allocator.head->size) {
    if (!arena_add_block(allocator)) return nullptr;
  }
  arena_block& block = *allocator.head;
  void* const room = block.base + block.used;
  block.used += sizeof(json_node);
  return new (room) json_node;
}

// To be called for a node that will hold a number, right after it was taken. A number may be a
// secret, and nodes hold no other: texts stay where they were parsed. Memory that held no number
// isn't overwritten before it is given back.
void arena_note_number(node_arena& allocator);

// Frees all blocks; harmless on an empty arena.
void arena_release(node_arena& allocator);

// Takes many nodes from an arena. Nobody else may take any while this exists.
class arena_nodes {
 public:
  explicit arena_nodes(node_arena& allocator) : allocator_(allocator) { find_room(); }
  ~arena_nodes() { leave_room(); }
  arena_nodes(const arena_nodes&) = delete;
  arena_nodes& operator=(const arena_nodes&) = delete;

  // Like arena_alloc.
  json_node* take() {
    if (left_ == 0 && !add_room()) return nullptr;
    --left_;
    return next_++;
  }

  // The node taken last is to hold a number.
  void note_number() { arena_note_number(allocator_); }

 private:
  bool add_room();
  void find_room();
  void leave_room();

  node_arena& allocator_;
  json_node* next_ = nullptr;
  std::size_t left_ = 0;  // nodes that still fit there
};

// An empty arena of the default block size that is released at the end of its scope.
struct scoped_node_arena : node_arena {
  scoped_node_arena() : node_arena{nullptr, default_arena_block_size} {}
  ~scoped_node_arena() { arena_release(*this); }
  scoped_node_arena(const scoped_node_arena&) = delete;
  scoped_node_arena& operator=(const scoped_node_arena&) = delete;
};
