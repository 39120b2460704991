// What systems demand of a library that has threads of its own. Linked on its own, as what concerns
// the module's folder is.
#pragma once

namespace platform {

// To be called before the module that this function is linked into starts a thread. Where a library
// that is being unloaded can wait for its threads, it has to, and nothing happens here; elsewhere
// the module stays loaded until the process ends. False if that can't be had; then no thread may be
// started.
bool prepare_for_threads();

}  // namespace platform
