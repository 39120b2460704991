// What the process tells of its end.
#pragma once

enum exit_value {
  exit_input_ended = 0,
  exit_no_library = 1,
  exit_no_interface = 2,
  exit_no_memory = 3,
};
