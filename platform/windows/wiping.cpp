#include "platform/wiping.h"

#include <malloc.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>

namespace platform {
namespace {

// More than a request or a notification uses below the function that serves it, and small enough
// for the threads of any library.
constexpr std::size_t stack_reach = std::size_t{8} * 1024;

}  // namespace

void wipe(void* memory, std::size_t size) { SecureZeroMemory(memory, size); }

std::size_t free_wiped(void* block) {
  const std::size_t size = block != nullptr ? _msize(block) : 0;
  wipe(block, size);
  std::free(block);
  return size;
}

void return_free_memory() { _heapmin(); }

[[gnu::noinline]] void wipe_stack() {
  char below[stack_reach];
  wipe(below, sizeof below);
}

// These fields of the stream are the ones that the runtime's own macros use; no function tells
// where in its buffer a stream stands.
void wipe_read_bytes(std::FILE* input, std::size_t size) {
  if (input->_base == nullptr) return;
  const auto before = static_cast<std::size_t>(input->_ptr - input->_base);
  if (size <= before) {
    wipe(input->_ptr - size, size);
    return;
  }
  // The buffer was refilled in between. What it held before may extend beyond what it holds now.
  char* const unread_end = input->_ptr + std::max(input->_cnt, 0);
  wipe(input->_base, before);
  wipe(unread_end, static_cast<std::size_t>(input->_base + input->_bufsiz - unread_end));
}

void wipe_sent_bytes(std::FILE* output, std::size_t size) {
  if (output->_base == nullptr) return;
  wipe(output->_base, std::min(size, static_cast<std::size_t>(output->_bufsiz)));
}

}  // namespace platform
