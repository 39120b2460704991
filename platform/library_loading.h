// Loading a library to find out whether and why not the host can load it. For the companion
// programs; the host has load_library.
#pragma once

#include <string>

#include "platform/platform.h"

namespace platform {

struct load_attempt {
  module_handle module = nullptr;  // null if it can't be loaded
  std::string error;               // what the system says then; may be empty
  std::string missing;  // name of the library that it needs and that isn't found, if known
};

// Loads the library at this absolute path as a host does that lies beside it. Once in a process:
// on some systems what is loaded later is looked for beside the library too.
load_attempt try_to_load(const std::string& path);

}  // namespace platform
