// The order in which the process-wide objects go at the end of the process.
#pragma once

// Registers the exit actions of the objects that live from start to end. Called first thing in
// main, before any object that registers its end at its first use; so the order of the ends is
//
//   1. the store of unfinished messages, if a frame was ever taken
//   2. agentObserver
//   3. client_library, with the library itself
//   4. stdout_lock, as a static object
//
// whichever source files the objects live in.
void register_exit_actions();
