// The thread on which the library notifies the host.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <thread>

#include "agent/responder.h"
#include "messages/agent_interface.h"
#include "platform/checked_mutex.h"

// Takes requests and handles them one by one in order of arrival, so that each sees what earlier
// ones have done. The thread starts with the first request, since many browser sessions end without
// one.
//
// All its functions are for the host's main thread.
//
// Nothing is dropped, since a lost request might be the one that locks the coffer. While the
// observer is stuck or slower than the caller, posted requests are kept, up to a limit; then the
// caller waits, and in the end so does whoever writes to the host.
class delivery {
 public:
  // Once the thread has started, it alone uses `r`.
  explicit delivery(responder& r) : responder_(r) {}

  // Waits for a `notify` in progress; drops requests that haven't been handled.
  ~delivery();
  delivery(const delivery&) = delete;
  delivery& operator=(const delivery&) = delete;

  // Greets the observer, and notifies it from then on. False if there is an observer already or
  // `observer` is null.
  bool start(iCfClientObs* observer);

  // Queues a request whose form has `form_size` bytes. False without an observer, or if the system
  // refuses the thread.
  bool post(owned_message request, std::size_t form_size);

 private:
  bool start_thread();
  void run(iCfClientObs& observer);
  owned_message next();

  struct queued_request {
    owned_message message;
    std::size_t cost;
  };

  responder& responder_;
  checked_mutex mutex_;
  std::condition_variable changed_;
  std::deque<queued_request> requests_ GUARDED_BY(mutex_);
  std::size_t queued_cost_ GUARDED_BY(mutex_) = 0;
  bool ending_ GUARDED_BY(mutex_) = false;
  iCfClientObs* observer_ = nullptr;
  std::thread thread_;
};
