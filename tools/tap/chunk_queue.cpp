#include "tools/tap/chunk_queue.h"

#include <utility>

void chunk_queue::put(bool from_host, std::string_view bytes) {
  traffic_chunk chunk;
  chunk.from_host = from_host;
  chunk.time = std::chrono::system_clock::now();
  chunk.size = bytes.size();
  const checked_lock lock(mutex_);
  if (closed_ || refusing_) return;
  chunk.lost = bytes.size() > capacity_ - size_;
  if (chunk.lost && !waiting_.empty() && waiting_.back().lost &&
      waiting_.back().from_host == from_host) {
    waiting_.back().size += bytes.size();
    return;
  }
  if (!chunk.lost) {
    chunk.bytes = bytes;
    size_ += bytes.size();
  }
  waiting_.push_back(std::move(chunk));
  changed_.notify_one();
}

bool chunk_queue::get(traffic_chunk& next) {
  checked_lock lock(mutex_);
  changed_.wait(lock.native(), [this]() REQUIRES(mutex_) { return closed_ || !waiting_.empty(); });
  if (waiting_.empty()) return false;
  next = std::move(waiting_.front());
  waiting_.pop_front();
  size_ -= next.bytes.size();
  return true;
}

void chunk_queue::close() {
  const checked_lock lock(mutex_);
  closed_ = true;
  changed_.notify_all();
}

void chunk_queue::refuse() {
  const checked_lock lock(mutex_);
  refusing_ = true;
  waiting_.clear();
  size_ = 0;
}
