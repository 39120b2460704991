// What the tests need of the system beside child processes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/child_process.h"
#include "platform/debug_viewer.h"

// Replaces the host's configuration, which all hosts of a build share; so they do the channel on
// which their diagnostics come.
void write_configuration(const std::string& text);
std::unique_ptr<platform::debug_viewer> open_debug_channel();

// An X server without a screen, and the DISPLAY of child processes.
struct x_server {
  // At `where`, ":N", or at a free number.
  explicit x_server(const std::string& where = {});
  bool move_pointer(std::int16_t x, std::int16_t y);

  std::unique_ptr<platform::child_process> process;
  std::string display;  // where it serves; empty when it didn't start
};
