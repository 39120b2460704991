// Hands the bytes of a browser on to a host, and the host's to the browser, unchanged and at once.
#pragma once

#include <string_view>

#include "platform/child_process.h"
#include "tools/tap/recorder.h"

class relay {
 public:
  // Both live as long as the process: a thread may be waiting for the browser to the end. Without a
  // recorder nothing is noted.
  relay(platform::child_process& host, recorder* record) : host_(host), record_(record) {}

  // Works until the host has ended, and gives its exit value. The end of the browser's input is
  // handed on too, and so is that of a side which takes no more.
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
