// Returns the memory of a large request or notification to the system. The allocator would keep it
// for the next one, which may be days away. Any thread may call at any time.
#pragma once

#include <cstddef>

// A block that counts as large, in bytes.
constexpr std::size_t large_block_size = std::size_t{128} * 1024;

// Records that `size` bytes which ordinary traffic doesn't need have just gone back to the
// allocator.
void note_spare_memory(std::size_t size);

// Returns that memory to the system, once there is enough of it to be worth the call, which walks
// all of the allocator's memory. Called when a request or a notification is done.
void give_spare_memory_back();
