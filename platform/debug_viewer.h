// The receiving end of the debugger output, for the viewer program.
#pragma once

#include <memory>
#include <string>

namespace platform {

// Receives the lines that the user's hosts write while it lives; there is one per user. What was
// written before is gone, and so are lines that come faster than they are taken.
class debug_viewer {
 public:
  // Null, with the reason and what to do about it in `error`, if there is no place to listen or
  // another viewer listens already. To be called before the process starts threads, and once: from
  // then on the user's request to end the process ends `receive` instead, and a closed reader of
  // standard output is a failed write. A second request ends the process at once.
  static std::unique_ptr<debug_viewer> open(std::string& error);
  virtual ~debug_viewer() = default;

  // Waits for the next line; a very long one arrives cut. False when the process is asked to end,
  // or nothing more can be received.
  virtual bool receive(std::string& line) = 0;
};

}  // namespace platform
