// Removes what messages leave behind in memory: they hold passwords. No optimiser drops any of it.
// Linked on its own, so that tests which put a fake behind the platform layer have the real one.
#pragma once

#include <cstddef>
#include <cstdio>

namespace platform {

void wipe(void* memory, std::size_t size);

// Frees a block of malloc or calloc, or null, after its whole content has been overwritten. Gives
// the size of that.
std::size_t free_wiped(void* block);

// Lets the system have the memory that the allocator holds and nobody uses.
void return_free_memory();

// Overwrites the part of the stack that calls of the caller's have used, some kilobytes of it.
// What those calls keep in variables must be out of use.
void wipe_stack();

// Overwrite what the buffer of a stream keeps of bytes that are through: of an input the last
// `size` that have been read, of an output that has just been flushed the last `size` written.
// While they run nobody may use the stream.
void wipe_read_bytes(std::FILE* input, std::size_t size);
void wipe_sent_bytes(std::FILE* output, std::size_t size);

}  // namespace platform
