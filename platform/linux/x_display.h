// The X server that the environment names, and what proves to it that the user may ask.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#include <string>
#include <vector>

namespace platform {

// A display of this machine. A server across a network can't be asked in bounded time.
struct x_display {
  std::string number;  // as the name of the display has it, digits
  int screen = 0;
};

// The display that DISPLAY names, ":N" or ":N.SCREEN" with an optional "unix" in front.
std::optional<x_display> named_display();

// Where its server may listen: in the abstract name space, and in the file system.
struct x_address {
  sockaddr_un socket;
  socklen_t size;
};
std::vector<x_address> addresses_of(const x_display& display);

// The key of that display in the file that XAUTHORITY names, or the user's own. Empty if there is
// none; then the server may still know the user.
std::string key_of(const x_display& display);

}  // namespace platform
