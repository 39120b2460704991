// What a system demands of a library that has threads of its own.
#pragma once

// To be called before the library starts its first thread. Where a library that is being unloaded
// can wait for its threads, it has to, and nothing happens here. Elsewhere, on Windows, the library
// stays loaded until the process ends, and its threads end with the process. False if that can't
// be had; then the library may start no thread.
bool prepare_for_threads();
