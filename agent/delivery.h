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

// Takes requests and works on them one by one, in the order in which they came, so that each sees
// what the ones before it have done. The thread comes with the first request, since many a browser
// ends without one.
//
// All its functions are the host's main thread's.
//
// Nothing is dropped, since a lost request might be the one that locks the coffer. While the
// observer is stuck or slower than the caller, what is posted is kept, up to a limit; then the
// caller waits, and with it, in the end, whoever writes to the host.
class delivery {
 public:
  // `r` is the thread's alone once it has been started.
  explicit delivery(responder& r) : responder_(r) {}

  // Waits for a `notify` that is under way; drops what hasn't been worked on.
  ~delivery();
  delivery(const delivery&) = delete;
  delivery& operator=(const delivery&) = delete;

  // Greets the observer, and serves it from then on. False if there is an observer already or
  // `observer` is null.
  bool start(iCfClientObs* observer);

  // Queues a request whose form has so many bytes. False without an observer, or if the system
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
