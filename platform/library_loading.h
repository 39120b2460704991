// Loads a library to find out whether the host can load it and, if not, why. For the companion
// programs; the host uses load_library.
#pragma once

#include <string>

#include "platform/platform.h"

namespace platform {

struct load_attempt {
  module_handle module = nullptr;  // null if it can't be loaded
  std::string error;               // the system's reason then; may be empty
  std::string missing;             // the needed library that isn't found, if its name is known
};

// Loads the library at this absolute path as a host beside it would. Call it once per process: on
// some systems later libraries are searched for beside this one too.
load_attempt try_to_load(const std::string& path);

}  // namespace platform
