// What a large request or notification has used goes back to the system: the allocator would keep
// it for the next one, which may be days away. Any thread may call at any time.
#pragma once

#include <cstddef>

// A block that counts as large, in bytes.
constexpr std::size_t large_block_size = std::size_t{128} * 1024;

// Tells of memory that ordinary traffic doesn't use, and that was given back to the allocator just
// now.
void note_spare_memory(std::size_t size);

// Gives it back to the system, if there is enough of it to be worth a call that looks through all
// of the allocator's memory. For moments at which a request or a notification is done with.
void give_spare_memory_back();
