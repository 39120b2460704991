#include "bridge/notify_gate.h"

bool notify_gate::enter() {
  const checked_lock lock(mutex_);
  if (closed_) return false;
  ++inside_;
  return true;
}

void notify_gate::leave() {
  const checked_lock lock(mutex_);
  --inside_;
  if (closed_ && inside_ == 0) emptied_.notify_all();
}

bool notify_gate::close(std::chrono::milliseconds patience) {
  checked_lock lock(mutex_);
  closed_ = true;
  return emptied_.wait_for(lock.native(), patience,
                           [this]() REQUIRES(mutex_) { return inside_ == 0; });
}
