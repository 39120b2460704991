// What a system requires of a library that has threads of its own.
#pragma once

// Call this before the library starts its first thread. Where a library that is being unloaded can
// wait for its threads, it must, and nothing happens here. Elsewhere, on Windows, the library stays
// loaded until the process ends, and its threads end with the process. False if that fails; then
// the library may not start a thread.
bool prepare_for_threads();
