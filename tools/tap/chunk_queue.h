// Bytes on their way from the threads that relay them to the thread that records them.
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
  // The most that may wait, in bytes; more than a browser sends in one message.
  explicit chunk_queue(std::size_t capacity) : capacity_(capacity) {}

  // Never waits for the reader. Any thread.
  void put(bool from_host, std::string_view bytes);

  // Waits for the next chunk; false once the queue is closed and empty.
  bool get(traffic_chunk& next);

  // Takes nothing more; what is waiting can still be read.
  void close();

  // Takes nothing more and reports no loss, and drops what is waiting. The reader goes on waiting
  // until `close`.
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
