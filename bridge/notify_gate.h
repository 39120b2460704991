// Keeps calls of the client library's threads away from a process that is ending.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

// A door that is open until it is closed for good. Any thread may use it. Who passes the open door
// takes no lock, and who comes to a closed one changes nothing: threads that keep knocking can't
// hold up those that are still inside, nor the one that waits for them.
class notify_gate {
 public:
  // False once the gate is closed: then the caller must touch nothing, and not call leave.
  bool enter();
  void leave();

  // Lets nobody in any more and waits until all who are inside have left, or for `timeout` at the
  // most. True if nobody is inside.
  bool close(std::chrono::milliseconds timeout);

 private:
  // Set beside the number of those inside.
  static constexpr std::uint32_t closed_mark = 0x8000'0000;

  std::atomic<std::uint32_t> state_{0};
  // Taken by the closer, and by those who leave after the closing.
  std::mutex mutex_;
  std::condition_variable emptied_;
};
