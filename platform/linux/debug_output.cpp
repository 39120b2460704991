// The stand-in for a debugger's output window: one datagram per line to a socket in the user's own
// runtime folder. If nobody listens, the line is lost: messages hold passwords, so lines must not
// pile up anywhere.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "platform/linux/debug_address.h"
#include "platform/linux/descriptor.h"
#include "platform/platform.h"

namespace platform {
namespace {

struct debug_socket {
  // Stays open: a thread of the library may write a line while the process ends.
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_un address = debug_address();
  std::string folder = debug_folder(address);
};

// Longer than any line of the diagnostics, in units; the rest is cut.
constexpr std::size_t max_wide_line = 256;

void send_line(const char* line, std::size_t length) {
  static const debug_socket target;
  if (!is_own_folder(target.folder)) return;
  (void)sendto(target.fd, line, length, MSG_DONTWAIT | MSG_NOSIGNAL,
               reinterpret_cast<const sockaddr*>(&target.address), sizeof target.address);
}

}  // namespace

void write_debug_line(const char* line) { send_line(line, std::strlen(line)); }

void write_debug_line(const wide_char* line) {
  const wide_view text = wide_view(line).substr(0, max_wide_line);
  char narrow[3 * max_wide_line];
  send_line(narrow, utf16_to_utf8(text.data(), static_cast<std::uint32_t>(text.size()), narrow));
}

// A tracer shows as a process id other than 0 in the process's own status.
bool debugger_attached() {
  char status[4096];
  const descriptor file(open("/proc/self/status", O_RDONLY | O_CLOEXEC));
  const ssize_t length = read(file.get(), status, sizeof status);

  constexpr std::string_view field = "\nTracerPid:\t";
  const std::string_view text(status, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::size_t at = text.find(field);
  return at != std::string_view::npos && text.substr(at + field.size(), 2) != "0\n";
}

std::int32_t current_thread_id() { return static_cast<std::int32_t>(syscall(SYS_gettid)); }

}  // namespace platform
