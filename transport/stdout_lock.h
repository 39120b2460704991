// The lock that makes one frame atomic on standard output.
#pragma once

#include "platform/checked_mutex.h"

// Held over the length, the text and the flush of one frame, never across frames. Usable from
// before main until its exit action, the last one, has ended it.
class output_lock : public checked_mutex {
 public:
  // What the exit action does: whoever comes later has no business on the stream.
  void end() { ended_ = true; }
  bool ended() const { return ended_; }

 private:
  bool ended_ = false;
};

extern output_lock stdout_lock;
