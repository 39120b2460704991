// Keeps a capture of what goes by, on a thread of its own: whoever brings bytes never waits for it,
// nor for a disk. What goes wrong ends the record and nothing else.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "platform/checked_mutex.h"
#include "platform/private_file.h"
#include "tools/capture_item.h"
#include "tools/tap/capture_maker.h"
#include "tools/tap/chunk_queue.h"

class recorder {
 public:
  // Starts a new capture in `folder` with the item `start`, which tells what is recorded. The file
  // gets `limit` bytes at the most. What goes wrong is told on standard error.
  recorder(std::string folder, capture_item start, std::size_t limit);
  ~recorder();
  recorder(const recorder&) = delete;
  recorder& operator=(const recorder&) = delete;

  // Notes bytes that have been handed on. Any thread.
  void take(bool from_host, std::string_view bytes) { queue_.put(from_host, bytes); }

  // Ends the capture, once. Gives up on a slow disk before long, with what was written until then.
  void finish(std::optional<int> exit_value);

 private:
  void run();
  bool open();
  void record(const traffic_chunk& chunk);
  void write(std::string_view lines);
  void write_end();
  void stop(const std::string& reason);

  const std::string folder_;
  const capture_item start_;
  const std::size_t limit_;
  chunk_queue queue_;

  // The thread's own.
  capture_maker maker_;
  std::unique_ptr<platform::private_file> file_;
  std::size_t written_ = 0;
  std::string stopped_;  // why the record ended before the traffic

  checked_mutex mutex_;
  std::condition_variable changed_;
  std::optional<int> exit_value_ GUARDED_BY(mutex_);
  bool ended_ GUARDED_BY(mutex_) = false;

  std::thread thread_;
};
