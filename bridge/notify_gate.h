// Keeps calls of the client library's threads out of a process that is ending.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

// A gate that is open until it is closed for good. Any thread may use it. Entering takes no lock,
// and trying a closed gate changes nothing: threads that keep trying can't hold up those that are
// still inside, nor the one that waits for them.
class notify_gate {
 public:
  // False once the gate is closed: then the caller must touch nothing and must not call leave.
  bool enter();
  void leave();

  // Lets nobody else in, and waits until all who are inside have left, for at most `timeout`. True
  // if nobody is inside.
  bool close(std::chrono::milliseconds timeout);

 private:
  // Kept in one word with the number of those inside.
  static constexpr std::uint32_t closed_mark = 0x8000'0000;

  std::atomic<std::uint32_t> state_{0};
  // Taken by the closer, and by those who leave after the gate was closed.
  std::mutex mutex_;
  std::condition_variable emptied_;
};
