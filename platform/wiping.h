// Removes what messages leave behind in memory: they hold passwords. The optimiser can't drop any
// of it. Linked on its own, so that tests with a fake platform layer still have the real one.
#pragma once

#include <cstddef>
#include <cstdio>

namespace platform {

void wipe(void* memory, std::size_t size);

// Overwrites the whole content of a block of malloc or calloc, and frees it. Null is allowed.
// Returns the size of the content.
std::size_t free_wiped(void* block);

// Returns memory that the allocator holds and nobody uses to the system.
void return_free_memory();

// Overwrites some kilobytes of the stack that functions called before by this caller have used.
// What they kept there must be out of use.
void wipe_stack();

// Overwrite what a stream's buffer still holds of bytes that have passed through: of an input the
// last `size` bytes read, of an output that has just been flushed the last `size` written. Nobody
// may use the stream meanwhile.
void wipe_read_bytes(std::FILE* input, std::size_t size);
void wipe_sent_bytes(std::FILE* output, std::size_t size);

}  // namespace platform
