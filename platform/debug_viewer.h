// The receiving end of the debugger output, for the viewer program.
#pragma once

#include <memory>
#include <string>

namespace platform {

// Receives the lines that the user's hosts write while it exists. There is one viewer per user.
// Earlier lines are lost, and so are lines that come faster than they are received.
class debug_viewer {
 public:
  // Null, with the reason and a remedy in `error`, if there is no place to listen or another viewer
  // is listening already. Call it once, before the process starts threads. From then on the user's
  // request to end the process ends `receive` instead, and a second request ends the process at
  // once. A write to standard output whose reader has gone fails.
  static std::unique_ptr<debug_viewer> open(std::string& error);
  virtual ~debug_viewer() = default;

  // Waits for the next line; a very long one is cut. False when the process is asked to end, or if
  // nothing more can be received.
  virtual bool receive(std::string& line) = 0;
};

}  // namespace platform
