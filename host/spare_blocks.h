// Memory for trees and bags, in blocks of a kilobyte. Pages follow each other and ask for the same
// again, while the system's allocator keeps just a few of a size at hand: so blocks that were given
// back are kept for whoever asks next, half a megabyte of them at the most.
//
// Any thread may call at any time.
#pragma once

#include <cstddef>

constexpr std::size_t spare_block_size = 1024;

// A block, not initialised; it is the caller's. The process ends when the system has no memory
// left.
void* take_block();

// The same, or null where there is none at hand. For users that need less than a block: many of
// them do better with memory of their own size.
void* take_block_at_hand();

// Takes a block back, and wipes it.
void give_block_back(void* block);
