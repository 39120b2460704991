#include "transport/frame_reader.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "host/diagnostics/diagnostics.h"
#include "platform/platform.h"
#include "platform/wiping.h"
#include "transport/frame_format.h"

namespace {

// How many bytes the stream's buffer held after the last message.
std::atomic<std::size_t> held_input{0};

// Diagnostics show lengths as signed 32-bit numbers.
long as_signed(std::size_t length) { return static_cast<std::int32_t>(length); }

// A signal that the library handles on this thread interrupts a read, but doesn't end the input.
bool may_go_on(int error, std::FILE* input) {
  return error == EINTR || (error == EAGAIN && platform::wait_for_input(input));
}

// Reads `size` bytes, fewer at the end of the input.
std::size_t read_bytes(void* bytes, std::size_t size, std::FILE* input) {
  std::size_t count = 0;
  for (;;) {
    errno = 0;
    count += std::fread(static_cast<char*>(bytes) + count, 1, size - count, input);
    if (count == size || std::ferror(input) == 0 || !may_go_on(errno, input)) return count;
    std::clearerr(input);
  }
}

}  // namespace

std::int32_t read_message(std::string& message, std::FILE* input, fragment_store& store) {
  for (;;) {
    frame_length i_len = 0;
    const std::size_t header_read = read_bytes(&i_len, sizeof i_len, input);
    if (header_read != sizeof i_len) {
      if (!dump_off) {
        log_line("actual_read != 4 but instead is %ld; bail out [1]", as_signed(header_read));
      }
      return read_end;
    }
    if (i_len >= frame_length_limit) {
      if (!dump_off) log_line("i_len >= 8192 but instead is %ld; ", as_signed(i_len));
      return read_too_long;
    }
    const std::unique_ptr<char[]> ibuf(new (std::nothrow) char[i_len + 1]);
    if (ibuf == nullptr) {
      if (!dump_off) log_line("ibuf malloc NULL; skip [3]");
      return read_no_memory;
    }
    const std::size_t actual_read = read_bytes(ibuf.get(), i_len, input);
    ibuf[actual_read] = '\0';
    // The next frame may be a long time in coming, even if this one completes no message.
    platform::wipe_read_bytes(input, header_read + actual_read);
    if (!dump_off) {
      log_line("actual_read url is %ld buffer:%s buflen=%d", as_signed(actual_read), ibuf.get(),
               static_cast<int>(std::strlen(ibuf.get())));
    }
    std::string text;
    reassemble_fragment(ibuf.get(), actual_read, text, store);
    if (!text.empty()) {
      held_input.store(platform::read_ahead(input), std::memory_order_relaxed);
      message = std::move(text);
      return read_complete;
    }
  }
}

// Part of a header isn't worth waiting for.
bool has_to_serve(std::size_t unread) {
  return held_input.load(std::memory_order_relaxed) + unread > sizeof(frame_length);
}
