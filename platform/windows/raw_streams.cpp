#include "platform/raw_streams.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>

namespace platform {
namespace {

constexpr int input = 0;
constexpr int output = 1;

HANDLE stream(int fd) { return reinterpret_cast<HANDLE>(_get_osfhandle(fd)); }

// Keeps the number taken: a file that is opened later must not take the stream's place.
void replace_by_nothing(int fd) {
  const int nothing = _open("NUL", _O_RDWR | _O_BINARY);
  if (nothing < 0 || _dup2(nothing, fd) < 0) _close(fd);
  if (nothing >= 0) _close(nothing);
}

}  // namespace

// A write of no bytes at the other end of a pipe also reads as no bytes, and isn't the end.
std::size_t read_standard_input(void* bytes, std::size_t size) {
  const HANDLE from = stream(input);
  DWORD count = 0;
  do {
    if (ReadFile(from, bytes, static_cast<DWORD>(size), &count, nullptr) == 0) return 0;
  } while (count == 0 && GetFileType(from) == FILE_TYPE_PIPE);
  return count;
}

bool write_standard_output(const void* bytes, std::size_t size) {
  const auto* at = static_cast<const char*>(bytes);
  const char* const end = at + size;
  while (at != end) {
    DWORD count = 0;
    const auto step =
        static_cast<DWORD>(std::min<std::size_t>(static_cast<std::size_t>(end - at), MAXDWORD));
    if (WriteFile(stream(output), at, step, &count, nullptr) == 0) return false;
    at += count;
  }
  return true;
}

void close_standard_input() { replace_by_nothing(input); }
void close_standard_output() { replace_by_nothing(output); }

void pass_on_end_requests(std::int64_t) {}

void give_way() { SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL); }

}  // namespace platform
