// The standard streams of a program that stands between two others: no buffer of the runtime's lies
// in between, so that what has come is there at once. Linked by who calls prepare_standard_streams.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// Waits for input and gives what there is, up to `size` bytes; 0 at its end. One thread at a time.
std::size_t read_standard_input(void* bytes, std::size_t size);

// Writes all bytes. False once nobody is left to read them. One thread at a time.
bool write_standard_output(const void* bytes, std::size_t size);

// Lets the other side see that nobody reads here any more, or that no more will come. By the thread
// that reads or writes.
void close_standard_input();
void close_standard_output();

// From now on a request to end this process, where a system has such requests, goes to the child
// `process_id` instead. Elsewhere nothing happens, and a child sees the end of its input.
void pass_on_end_requests(std::int64_t process_id);

// Makes the calling thread give way to all others, as far as the system lets a thread do so.
void give_way();

}  // namespace platform
