#include "agent/delivery.h"

#include <system_error>

#include "messages/library/library_threads.h"

namespace {

// What may be queued, in bytes of the requests' forms, and what each request costs besides. A
// larger request is queued only by itself.
constexpr std::size_t most_queued = std::size_t{16} * 1024 * 1024;
constexpr std::size_t request_cost = 4096;

}  // namespace

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

bool delivery::post(owned_message request, std::size_t form_size) {
  if (observer_ == nullptr || (!thread_.joinable() && !start_thread())) return false;
  const std::size_t cost = form_size + request_cost;
  {
    checked_lock lock(mutex_);
    changed_.wait(lock.native(), [this, cost]() REQUIRES(mutex_) {
      return requests_.empty() || queued_cost_ + cost <= most_queued;
    });
    requests_.push_back({std::move(request), cost});
    queued_cost_ += cost;
  }
  changed_.notify_one();
  return true;
}

bool delivery::start_thread() {
  if (!prepare_for_threads()) return false;
  try {
    thread_ = std::thread([this] { run(*observer_); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

void delivery::run(iCfClientObs& observer) {
  while (const owned_message request = next()) {
    // Both are gone before the next wait, so that secrets don't stay in memory longer than needed.
    if (const auto object = responder_.respond(*request)) observer.notify(object.get());
  }
}

// Waits for the next request; null at the end.
owned_message delivery::next() {
  checked_lock lock(mutex_);
  changed_.wait(lock.native(), [this]() REQUIRES(mutex_) { return ending_ || !requests_.empty(); });
  if (ending_) return nullptr;
  queued_request request = std::move(requests_.front());
  requests_.pop_front();
  queued_cost_ -= request.cost;
  changed_.notify_one();  // the caller of post may be waiting for room
  return std::move(request.message);
}
