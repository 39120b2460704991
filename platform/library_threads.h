// What systems require of a library that has threads of its own. Linked on its own, like
// module_folder.h.
#pragma once

namespace platform {

// Call this before the module that the function is linked into starts a thread. Where a library
// that is being unloaded can wait for its threads, it must, and nothing happens here. Elsewhere
// this keeps the module loaded until the process ends. False if that fails; then no thread may be
// started.
bool prepare_for_threads();

}  // namespace platform
