// The real host in a folder of its own, with a library beside it; the tests play the browser.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/child_process.h"
#include "tests/end_to_end/bytes.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "tools/request_cutter.h"

using lines = std::vector<std::string>;

// A binary form written as UTF-16, in hexadecimal; a word is two units, the low one first.
std::string hex(std::u16string_view form);

// The probe's line about a posted message of the class "msg::" + `name`.
std::string posted(const std::string& name, std::u16string_view form);

// The frame of a request that fits one envelope.
std::string request(std::string_view json);

// A new, empty folder for temporary files.
std::filesystem::path make_folder();

struct outcome {
  int exit_value = -1;
  std::string text;
};

// Runs a companion program without input, and returns what it writes.
outcome run_program(const std::string& program, const lines& arguments);

class tested_host {
 public:
  // Starts the host. The script is for the probe. If `library` is empty, there is none beside the
  // host.
  explicit tested_host(const std::string& script = {}, const std::string& library = PROBE_LIBRARY,
                       const lines& arguments = {});
  ~tested_host();

  // False if the host accepts no more input.
  bool send(std::string_view bytes);

  // Closes the input and returns the exit value, or -1 if the host doesn't end in time.
  int finish();

  // The next frame's envelope; nothing at the end, or if the stream is out of step.
  std::optional<std::string> next_frame();

  // The texts of the next replies, in the order of their completion. "end" marks the end of the
  // output; if a frame is broken or out of order, the last text says so.
  lines replies(std::size_t count);

  // The probe's report once it has `count` lines, or as far as it got in time.
  lines report(std::size_t count);

  platform::child_process& process() { return *process_; }

 private:
  std::filesystem::path folder_ = make_folder();
  std::unique_ptr<platform::child_process> process_;
  frame_splitter splitter_;
  message_joiner joiner_;
};
