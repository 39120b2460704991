#include "agent/delivery.h"

#include <system_error>

#include "platform/library_threads.h"

delivery::~delivery() {
  {
    const checked_lock lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

bool delivery::start(iCfClientObs* observer) {
  if (observer == nullptr || observer_ != nullptr) return false;
  observer_ = observer;
  observer->notify(responder_.greet().get());
  return true;
}

bool delivery::post(std::unique_ptr<iCfMsg> request) {
  if (observer_ == nullptr || (!thread_.joinable() && !start_thread())) return false;
  {
    const checked_lock lock(mutex_);
    requests_.push_back(std::move(request));
  }
  changed_.notify_one();
  return true;
}

bool delivery::start_thread() {
  if (!platform::prepare_for_threads()) return false;
  try {
    thread_ = std::thread([this] { run(*observer_); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

void delivery::run(iCfClientObs& observer) {
  while (const std::unique_ptr<iCfMsg> request = next()) {
    // Neither lives through the wait, so that no secret lies in memory longer than it is needed.
    if (const auto object = responder_.respond(*request)) observer.notify(object.get());
  }
}

// Waits for the next request; null at the end.
std::unique_ptr<iCfMsg> delivery::next() {
  checked_lock lock(mutex_);
  changed_.wait(lock.native(), [this]() REQUIRES(mutex_) { return ending_ || !requests_.empty(); });
  if (ending_) return nullptr;
  std::unique_ptr<iCfMsg> request = std::move(requests_.front());
  requests_.pop_front();
  return request;
}
