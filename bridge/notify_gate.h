// Keeps calls of the client library's threads away from a process that is ending.
#pragma once

#include <chrono>
#include <condition_variable>

#include "platform/checked_mutex.h"

// A door that is open until it is closed for good. Any thread may use it.
class notify_gate {
 public:
  // False once the gate is closed: then the caller must touch nothing, and not call leave.
  bool enter();
  void leave();

  // Lets nobody in any more and waits until all who are inside have left, or for `patience` at the
  // most. True if nobody is inside.
  bool close(std::chrono::milliseconds patience);

 private:
  checked_mutex mutex_;
  std::condition_variable emptied_;
  int inside_ GUARDED_BY(mutex_) = 0;
  bool closed_ GUARDED_BY(mutex_) = false;
};
