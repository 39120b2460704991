// The exit values of the process. A process without memory ends with exit_no_memory instead, see
// memory/allocation.h.
#pragma once

enum exit_value {
  exit_input_ended = 0,
  exit_no_library = 1,
  exit_no_interface = 2,
};
