#include "bridge/notify_gate.h"

bool notify_gate::enter() {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (closed_) return false;
  ++inside_;
  return true;
}

void notify_gate::leave() {
  const std::lock_guard<std::mutex> guard(mutex_);
  --inside_;
  if (closed_ && inside_ == 0) emptied_.notify_all();
}

bool notify_gate::close(std::chrono::milliseconds patience) {
  std::unique_lock<std::mutex> guard(mutex_);
  closed_ = true;
  return emptied_.wait_for(guard, patience, [this] { return inside_ == 0; });
}
