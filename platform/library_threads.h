// The end of a library that has threads of its own, which systems see differently: some let a
// library that is being unloaded wait for its threads, on others that would hang. Linked on its
// own, as what concerns the module's folder is.
#pragma once

namespace platform {

// To be called before the module that this function is linked into starts a thread. Where its end
// can't wait for threads, keeps it loaded until the process ends. False if that fails; then no
// thread may be started.
bool prepare_for_threads();

// For the end of a module that has called prepare_for_threads. True when the system has already
// ended its threads, wherever they were; what they used may be locked for ever or half changed, and
// is to be left alone. False when the module has to end them itself.
bool threads_have_been_ended();

}  // namespace platform
