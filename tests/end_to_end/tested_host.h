// The real host in a folder of its own, with a library beside it; the tests play browser.
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

// A binary form that is written down as UTF-16, in hexadecimal; a word is two units, low one first.
std::string hex(std::u16string_view form);

// The probe's line on a posted message of the class "msg::" + `name`.
std::string posted(const std::string& name, std::u16string_view form);

// The frame of a request that fits one envelope.
std::string request(std::string_view json);

// A new, empty folder for temporary files.
std::filesystem::path make_folder();

struct outcome {
  int exit_value = -1;
  std::string text;
};

// Runs a companion program without input, and gives what it writes.
outcome run_program(const std::string& program, const lines& arguments);

class tested_host {
 public:
  // Starts the host. The script is for the probe; without a library, none is put beside the host.
  explicit tested_host(const std::string& script = {}, const std::string& library = PROBE_LIBRARY,
                       const lines& arguments = {});
  ~tested_host();

  // False when the host takes no more input.
  bool send(std::string_view bytes);

  // Closes the input and gives the exit value, -1 when the host doesn't end in time.
  int finish();

  // The next frame's envelope; nothing at the end, and when the stream is out of step.
  std::optional<std::string> next_frame();

  // Texts of the next replies, in the order of their completion. Ends with "end" at the end of the
  // output, and with what is wrong where a frame isn't whole or not in its order.
  lines replies(std::size_t count);

  // The probe's report once it has `count` lines, or as it is when time ran out.
  lines report(std::size_t count);

  platform::child_process& process() { return *process_; }

 private:
  std::filesystem::path folder_ = make_folder();
  std::unique_ptr<platform::child_process> process_;
  frame_splitter splitter_;
  message_joiner joiner_;
};
