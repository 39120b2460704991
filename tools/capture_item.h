// The lines of a capture, one JSON object each. docs/capture.md describes them.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using capture_time = std::chrono::system_clock::time_point;

constexpr std::int32_t capture_format = 1;

enum class capture_kind { start, message, unread, end };

// Consecutive frames with envelopes of the same size.
struct frame_run {
  std::uint64_t size = 0;  // of the envelope, in bytes
  std::uint64_t count = 0;
};

struct capture_item {
  capture_kind kind = capture_kind::start;
  std::string time;  // UTC
  bool from_host = false;

  // start
  std::int32_t format = capture_format;
  std::string host;
  std::vector<std::string> arguments;
  bool with_values = false;

  // message
  std::vector<frame_run> frames;
  std::string message;  // JSON

  // unread
  std::uint64_t bytes = 0;

  // unread, and end if the record isn't complete
  std::string reason;

  // end
  std::optional<int> exit_value;  // nothing if the end of the host wasn't seen
};

std::string capture_time_text(capture_time time);

// The line, without its end.
std::string capture_line(const capture_item& item);

// Nothing, with the reason in `error`, if the line doesn't belong to a capture.
std::optional<capture_item> parse_capture_line(std::string line, std::string& error);
