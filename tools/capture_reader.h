// Reads the lines of a capture one by one.
#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

#include "tools/capture_item.h"

// No message that is recorded makes a longer line.
constexpr std::size_t max_capture_line = std::size_t{512} * 1024 * 1024;

class capture_reader {
 public:
  // Reads `ahead`, which has been read from the file already, and the rest of the file.
  capture_reader(std::FILE* file, std::string ahead) : file_(file), ahead_(std::move(ahead)) {}

  // Whether a file that starts like this is a capture. A stream of frames never does: its first
  // length would be beyond what a host takes.
  static bool starts_capture(const std::string& ahead) { return ahead.starts_with("{\""); }

  // The next item; nothing at the end and, with the reason in `error`, where the capture can't be
  // read on.
  std::optional<capture_item> next(std::string& error);

  // How many lines have been read.
  std::size_t line() const { return line_; }

 private:
  int next_byte();
  bool read_line(std::string& line);

  std::FILE* const file_;
  const std::string ahead_;
  std::size_t at_ = 0;
  std::size_t line_ = 0;
};
