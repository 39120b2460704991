// Where the running code lies on disk, for what is looked for beside it. Linked on its own, so that
// a library or a companion program can have it without the rest of the platform layer.
#pragma once

#include <string>

namespace platform {

// Folder of the module that this function is linked into, be it the executable or a library, with
// the separator at its end, so that a file name can be appended. Empty when it can't be found out.
std::string module_folder();

}  // namespace platform
