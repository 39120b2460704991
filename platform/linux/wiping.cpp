#include "platform/wiping.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace platform {
namespace {

// Serving a request takes 2.4 KB of stack below the function that does it, a notification less.
constexpr std::size_t stack_reach = std::size_t{4} * 1024;

}  // namespace

void wipe(void* memory, std::size_t size) { explicit_bzero(memory, size); }

std::size_t free_wiped(void* block) {
  if (block == nullptr) return 0;
  const std::size_t size = malloc_usable_size(block);
  wipe(block, size);
  std::free(block);
  return size;
}

void return_free_memory() { malloc_trim(0); }

[[gnu::noinline]] void wipe_stack() {
  char below[stack_reach];
  wipe(below, sizeof below);
}

// These fields of the stream are the ones that the C library's own macros once used; no function
// tells where in its buffer a stream stands.
void wipe_read_bytes(std::FILE* input, std::size_t size) {
  if (input->_IO_buf_base == nullptr) return;
  const auto before = static_cast<std::size_t>(input->_IO_read_ptr - input->_IO_buf_base);
  if (size <= before) {
    wipe(input->_IO_read_ptr - size, size);
    return;
  }
  // The buffer was refilled in between. What it held before may extend beyond what it holds now.
  wipe(input->_IO_buf_base, before);
  wipe(input->_IO_read_end, static_cast<std::size_t>(input->_IO_buf_end - input->_IO_read_end));
}

void wipe_sent_bytes(std::FILE* output, std::size_t size) {
  if (output->_IO_buf_base == nullptr) return;
  const auto room = static_cast<std::size_t>(output->_IO_buf_end - output->_IO_buf_base);
  wipe(output->_IO_buf_base, std::min(size, room));
}

}  // namespace platform
