// The standard streams of a program that stands between two others. They bypass the runtime's
// buffers, so that data is available as soon as it comes. For programs that call
// prepare_standard_streams.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// Waits for input and returns what there is, up to `size` bytes; 0 at its end. One thread at a
// time.
std::size_t read_standard_input(void* bytes, std::size_t size);

// Writes all bytes. False once nobody is left to read them. One thread at a time.
bool write_standard_output(const void* bytes, std::size_t size);

// Shows the other side that nobody reads here any more, or that no more will come. Called by the
// thread that reads or writes.
void close_standard_input();
void close_standard_output();

// From now on a request to end this process goes to the child `process_id` instead. Does nothing on
// systems without such requests; there the child sees the end of its input.
void pass_on_end_requests(std::int64_t process_id);

// Makes the calling thread give way to all others, as far as the system allows.
void give_way();

}  // namespace platform
