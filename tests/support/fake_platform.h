// Stands in for the platform layer in unit tests: returns what a test has set, and records what the
// host passes to the system. Text conversion and random numbers are the real ones.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace fake {

struct system_state {
  wide_string config_text;  // value of the one key; empty: there is no such file
  std::optional<platform::screen_point> cursor;
  bool debugger = false;
  std::int32_t thread_id = 812;
  void* library = nullptr;  // handle that loading returns; null: there is no library
  void* entry = nullptr;    // address of its one export; null: it has none
  std::function<void()> on_unload;
  bool abandoned = false;  // nobody is left at the other end of the standard streams

  std::vector<std::string> lines;
  std::vector<wide_string> wide_lines;
  int debug_calls = 0;     // of any function that diagnostics use
  std::string config_key;  // last asked for
  wide_string loaded_path;
  int unloaded = 0;
};

// The state of the current test.
system_state& system();

// Starts with a new state, and turns diagnostics on or off.
void reset(bool diagnostics);

}  // namespace fake
