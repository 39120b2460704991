#include "platform/linux/x_display.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace platform {
namespace {

// The number in a display name of this machine, ":N" or ":N.SCREEN" with an optional "unix" in
// front; negative for any other name. A server across a network can't be asked in bounded time.
int local_display() {
  const char* const display = std::getenv("DISPLAY");
  if (display == nullptr) return -1;
  const char* const number = std::strchr(display, ':');
  if (number == nullptr || number[1] < '0' || number[1] > '9') return -1;
  const std::string host(display, number);
  return host.empty() || host == "unix" ? std::atoi(number + 1) : -1;
}

// False if the file with the server's keys is one that could keep its reader waiting, as a pipe
// does. None at all is fine.
bool keys_are_readable() {
  const char* const named = std::getenv("XAUTHORITY");
  const char* const home = std::getenv("HOME");
  const std::string path =
      named != nullptr ? named : std::string(home ? home : "") + "/.Xauthority";
  struct stat status {};
  return stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

// True once the server has said anything to a greeting without a password, a refusal included.
bool greet(int fd) {
  // Low byte first, protocol 11.0, no name or data of an authorisation, padding.
  constexpr char greeting[] = {'l', 0, 11, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  if (send(fd, greeting, sizeof greeting, MSG_NOSIGNAL) != sizeof greeting) return false;
  pollfd readable = {fd, POLLIN, 0};
  char answer = 0;
  return poll(&readable, 1, static_cast<int>(x_answer_timeout.count())) == 1 &&
         recv(fd, &answer, 1, 0) == 1;
}

// Connects to the display's socket, in the abstract name space or in the file system.
bool answers_at(int display, bool abstract) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t shift = abstract ? 1 : 0;
  const int length = std::snprintf(address.sun_path + shift, sizeof address.sun_path - shift,
                                   "/tmp/.X11-unix/X%d", display);
  const std::size_t size = offsetof(sockaddr_un, sun_path) + shift +
                           static_cast<std::size_t>(length) + (abstract ? 0 : 1);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (fd < 0) return false;
  const bool connected =
      connect(fd, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)) == 0;
  const bool answered = connected && greet(fd);
  close(fd);
  return answered;
}

}  // namespace

bool x_server_answers() {
  const int display = local_display();
  return display >= 0 && keys_are_readable() &&
         (answers_at(display, true) || answers_at(display, false));
}

}  // namespace platform
