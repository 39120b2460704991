// Reads the lines of a capture one by one.
#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

#include "tools/capture_item.h"

// Longer than the line of any message that is recorded.
constexpr std::size_t max_capture_line = std::size_t{512} * 1024 * 1024;

class capture_reader {
 public:
  // Reads `ahead`, which was read from the file before, and then the rest of the file.
  capture_reader(std::FILE* file, std::string ahead) : file_(file), ahead_(std::move(ahead)) {}

  // Whether a file that starts like this is a capture. A stream of frames never does: its first
  // length would be more than a host accepts.
  static bool starts_capture(const std::string& ahead) { return ahead.starts_with("{\""); }

  // The next item. Nothing at the end, and, with the reason in `error`, if the capture can't be
  // read any further.
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
