// One run of a host: its process, the requests to it, and a thread that receives its notifications.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/checked_mutex.h"
#include "platform/child_process.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "tools/transcript.h"

class host_session {
 public:
  // Takes a host that has just been started. `shown` must outlive the session. A host counts as
  // quiet after `quiet_time` without a byte in either direction. Notifications are kept only if
  // `keep` says so.
  host_session(std::unique_ptr<platform::child_process> host, transcript& shown,
               std::chrono::milliseconds quiet_time, bool keep = false);
  ~host_session();
  host_session(const host_session&) = delete;
  host_session& operator=(const host_session&) = delete;

  // Sends one request in envelopes of at most `envelope_size` bytes.
  void send(const std::string& text, std::size_t envelope_size);

  // Waits until the host is quiet or the session is over. Gives up on a host that is never quiet.
  void wait_quiet();

  // The same, but stops waiting once this many notifications are kept.
  void wait_for(std::size_t notifications);

  // All notifications that are kept.
  std::vector<std::string> notifications() const;

  // Closes the host's input and waits for its end. Returns the exit value, or nothing if the host
  // had to be killed.
  std::optional<int> finish();

  // The first thing that went wrong; empty if nothing did.
  std::string failure() const;

 private:
  using clock = std::chrono::steady_clock;

  void read_output();
  void take(std::string_view bytes);
  bool take_frame(const std::string& text, std::string& error);
  void keep(std::string notification);
  void note_traffic();
  void note_end_of_output();
  void fail(const std::string& what);
  void stop_reader();

  const std::unique_ptr<platform::child_process> host_;
  transcript& shown_;
  const std::chrono::milliseconds quiet_time_;
  const bool keep_;
  std::uint32_t sent_ = 0;

  // Used by the reader thread only.
  frame_splitter splitter_;
  message_joiner joiner_;

  mutable checked_mutex mutex_;
  std::condition_variable changed_;
  clock::time_point last_traffic_ GUARDED_BY(mutex_) = clock::now();
  std::string failure_ GUARDED_BY(mutex_);
  std::vector<std::string> notifications_ GUARDED_BY(mutex_);
  bool input_closed_ GUARDED_BY(mutex_) = false;
  bool output_ended_ GUARDED_BY(mutex_) = false;
  bool stop_ GUARDED_BY(mutex_) = false;

  std::thread reader_;
};
