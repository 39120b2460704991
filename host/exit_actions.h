// The order in which the process-wide objects end.
#pragma once

// Registers the exit actions of the objects that live from start to end. Called first in main,
// before any object that registers its end at its first use. So the order of the ends, whichever
// source files the objects live in, is
//
//   1. the store of unfinished messages, if input was ever awaited
//   2. agentObserver
//   3. client_library, with the library itself
//   4. stdout_lock, as a static object
void register_exit_actions();
