// What an X server says, up to the place of the pointer, and the file with its keys.

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/x_conversation.h"
#include "platform/linux/x_display.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using clock = std::chrono::steady_clock;

void check_keys(std::string_view file) {
  const int keys = memfd_create("keys", MFD_CLOEXEC);
  require(write(keys, file.data(), file.size()) == std::ssize(file), "memory is a file");
  setenv("XAUTHORITY", ("/proc/self/fd/" + std::to_string(keys)).c_str(), 1);
  const std::string key = platform::key_of({"0"});
  require(file.find(key) != file.npos, "a key comes from the file");
  close(keys);
}

// A server that stays silent is waited for; one that hangs up isn't.
void check_talk(const std::string& said, int screen, bool hangs_up) {
  int ends[2] = {};
  require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0, "there is a socket");
  const ssize_t size = write(ends[1], said.data(), said.size());
  if (hangs_up) shutdown(ends[1], SHUT_WR);
  platform::screen_point point;
  const auto wait = std::chrono::milliseconds(hangs_up ? 5000 : 2);
  const auto start = clock::now();
  const bool told = platform::ask_for_pointer(ends[0], screen, "key", start + wait, point);
  require(clock::now() - start < std::chrono::seconds(2), "it ends in time");
  // An answer stands behind a setup with a screen.
  require(!told || size >= 8 + 32 + 4 + 32, "an answer was heard");
  char heard[100];
  const ssize_t words = read(ends[1], heard, sizeof heard);
  require(words == 36 + 8 || (words == 36 && !told), "one question is asked");
  close(ends[0]);
  close(ends[1]);
}

}  // namespace

// The first byte of the input chooses the screen, or with its top bit the keys.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  if (choice >= 0x80) {
    check_keys(input);
  } else {
    check_talk(unrolled(input), choice % 16, choice < 0x70);
  }
  return 0;
}
