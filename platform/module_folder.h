// Where the running code lies on disk, to find what lies beside it. Linked on its own, so that a
// library or a companion program can have it without the rest of the platform layer.
#pragma once

#include <string>

namespace platform {

// The folder of the module that this function is linked into, be it the executable or a library. It
// ends in a separator, so that a file name can be appended. Empty if it can't be found out.
std::string module_folder();

}  // namespace platform
