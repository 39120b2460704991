// What the operators of allocation.cpp do when there is no memory left.
#pragma once

// The exit value of a process that had no memory left. It doesn't abort: that raises a signal,
// which the library may handle, and the system may store a report of the crash with the process's
// memory.
constexpr int exit_no_memory = 3;
