#include "agent/delivery.h"

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
  if (observer == nullptr || thread_.joinable()) return false;
  if (!platform::prepare_for_threads()) return false;
  thread_ = std::thread([this, observer] { run(*observer); });
  return true;
}

void delivery::post(std::unique_ptr<iCfMsg> request) {
  {
    const checked_lock lock(mutex_);
    requests_.push_back(std::move(request));
  }
  changed_.notify_one();
}

void delivery::run(iCfClientObs& observer) {
  std::unique_ptr<iCfMsg> object = responder_.greet();
  for (;;) {
    if (object != nullptr) observer.notify(object.get());
    // Before the wait, so that no secret lies in memory longer than it is needed.
    object.reset();
    const std::unique_ptr<iCfMsg> request = next();
    if (request == nullptr) return;
    object = responder_.respond(*request);
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
