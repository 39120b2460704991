// Where the lines of the debugger output go: the meeting point of the host and the viewer.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>

namespace platform {

// The socket in the user's own runtime folder.
inline sockaddr_un debug_address() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s/%u/cfhost.debug", CFHOST_RUNTIME_DIR,
                static_cast<unsigned>(getuid()));
  return address;
}

}  // namespace platform
