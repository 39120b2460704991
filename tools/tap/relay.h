// Passes the bytes of a browser on to a host, and the host's to the browser, unchanged and at once.
#pragma once

#include <string_view>

#include "platform/child_process.h"
#include "tools/tap/recorder.h"

class relay {
 public:
  // Both must exist until the process ends: a thread may still be waiting for the browser then.
  // Without a recorder nothing is recorded.
  relay(platform::child_process& host, recorder* record) : host_(host), record_(record) {}

  // Works until the host has ended, and returns its exit value. Also passes on the end of the
  // browser's input, and the closing of a side that accepts no more.
  int run();

 private:
  void pass_input();
  int pass_output();
  void note(bool from_host, std::string_view bytes) {
    if (record_ != nullptr) record_->take(from_host, bytes);
  }

  platform::child_process& host_;
  recorder* const record_;
};
