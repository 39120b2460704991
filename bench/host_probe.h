// The real host with an agent that answers each request with the moments that it saw.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/child_process.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"

using nanoseconds = std::chrono::nanoseconds;

// The clock that all processes of the machine share.
nanoseconds now();

// What the agent reports of one request, and when the report arrived.
struct moments {
  nanoseconds posted{};    // the message reached the agent
  nanoseconds notified{};  // the agent called `notify`
  nanoseconds received{};  // the notification's first frame was here
};

class host_probe {
 public:
  // Starts the host. If something fails that the measurement needs, the process ends with a
  // message; the same goes for all functions below.
  explicit host_probe(const std::string& path);

  // The frame must hold a whole request.
  void send(const std::string& frame);
  moments receive();

  std::size_t resident_memory() const;

  // Closes the input and waits for the host's end, which must be a regular one.
  void finish();

 private:
  std::unique_ptr<platform::child_process> host_;
  frame_splitter splitter_;
  message_joiner joiner_;
};
