// The thread on which the library notifies the host.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <thread>

#include "agent/responder.h"
#include "messages/agent_interface.h"
#include "platform/checked_mutex.h"

// Takes requests on any thread and never makes the caller wait for an observer. Works on them one
// by one, in the order in which they came, so that each sees what the ones before it have done.
//
// Nothing is dropped: while the observer is stuck, all that is posted is kept. It is the host that
// bounds how much that can be.
class delivery {
 public:
  // `r` is used by the thread alone from `start` on.
  explicit delivery(responder& r) : responder_(r) {}

  // Waits for a `notify` that is under way; drops what hasn't been worked on.
  ~delivery();
  delivery(const delivery&) = delete;
  delivery& operator=(const delivery&) = delete;

  // Starts the thread, which greets the observer first. False if there is an observer already,
  // `observer` is null, or the system refuses.
  bool start(iCfClientObs* observer);

  // Queues a request, also before there is an observer.
  void post(std::unique_ptr<iCfMsg> request);

 private:
  void run(iCfClientObs& observer);
  std::unique_ptr<iCfMsg> next();

  responder& responder_;
  checked_mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<iCfMsg>> requests_ GUARDED_BY(mutex_);
  bool ending_ GUARDED_BY(mutex_) = false;
  std::thread thread_;  // used by the host's main thread alone
};
