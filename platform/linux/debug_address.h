// Where the lines of the debugger output go: the meeting point of the host and the viewer.
#pragma once

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace platform {

// The socket in the user's own runtime folder.
inline sockaddr_un debug_address() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s/%u/cfhost.debug", CFHOST_RUNTIME_DIR,
                static_cast<unsigned>(getuid()));
  return address;
}

inline std::string debug_folder(const sockaddr_un& address) {
  const std::string path = address.sun_path;
  return path.substr(0, path.rfind('/'));
}

// True if nobody but the user can have put anything into the folder or can take it away. Otherwise
// lines, which hold passwords, could go to somebody else's socket.
inline bool is_own_folder(const std::string& folder) {
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == getuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

}  // namespace platform
