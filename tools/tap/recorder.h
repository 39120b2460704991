// Keeps a capture of what passes, on a thread of its own: callers never wait for it, nor for a
// disk. If anything goes wrong, only the recording ends.
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
  // Starts a new capture in `folder` with the item `start`, which says what is recorded. The file
  // gets at most `limit` bytes. Problems are reported on standard error.
  recorder(std::string folder, capture_item start, std::size_t limit);
  ~recorder();
  recorder(const recorder&) = delete;
  recorder& operator=(const recorder&) = delete;

  // Records bytes that have been passed on. Any thread.
  void take(bool from_host, std::string_view bytes) { queue_.put(from_host, bytes); }

  // Ends the capture; called once. If the disk is slow it soon gives up, and keeps what was written
  // until then.
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

  // Used by the recorder's thread only.
  capture_maker maker_;
  std::unique_ptr<platform::private_file> file_;
  std::size_t written_ = 0;
  std::string stopped_;  // why the recording ended before the traffic

  checked_mutex mutex_;
  std::condition_variable changed_;
  std::optional<int> exit_value_ GUARDED_BY(mutex_);
  bool ended_ GUARDED_BY(mutex_) = false;

  std::thread thread_;
};
