// Memory for trees and bags, in blocks of a kilobyte. One page after the other needs about the same
// number of them, and the system's allocator keeps only a few of each size. So blocks that are
// given back are kept for the next page, up to half a megabyte.
//
// Any thread may call at any time.
#pragma once

#include <cstddef>

constexpr std::size_t kept_block_size = 1024;

// A block, not initialised; it is the caller's. The process ends when the system has no memory
// left.
void* take_block();

// A kept block, or null if none is left. For callers that need less than a block: they can ask the
// system for just their own size instead.
void* take_block_at_hand();

// Takes a block back, and wipes the first `used` bytes of it, all that were written to.
void give_block_back(void* block, std::size_t used = kept_block_size);
