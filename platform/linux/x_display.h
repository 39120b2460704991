// The X server that the environment names, and the key that lets the user ask it.
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

// The key for `display`, from the file that XAUTHORITY names or from the user's own. Empty if there
// is none; the server may still accept the user.
std::string key_of(const x_display& display);

}  // namespace platform
