// Bytes on their way from those who hand them on to the one who records them.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "platform/checked_mutex.h"
#include "tools/capture_item.h"

struct traffic_chunk {
  bool from_host = false;
  bool lost = false;  // there was no room for the bytes
  capture_time time;
  std::string bytes;  // empty when lost
  std::uint64_t size = 0;
};

class chunk_queue {
 public:
  // What may wait, in bytes; more than a browser sends in one message.
  explicit chunk_queue(std::size_t capacity) : capacity_(capacity) {}

  // Never waits for a reader. Any thread.
  void put(bool from_host, std::string_view bytes);

  // Waits for the next one; false when the queue is closed and empty.
  bool get(traffic_chunk& next);

  // Nothing that comes from now on is taken; what waits still is to be had.
  void close();

  // The same, but what comes is not missed, and what waits is thrown away; not the end.
  void refuse();

 private:
  const std::size_t capacity_;
  checked_mutex mutex_;
  std::condition_variable changed_;
  std::deque<traffic_chunk> waiting_ GUARDED_BY(mutex_);
  std::size_t size_ GUARDED_BY(mutex_) = 0;
  bool closed_ GUARDED_BY(mutex_) = false;
  bool refusing_ GUARDED_BY(mutex_) = false;
};
