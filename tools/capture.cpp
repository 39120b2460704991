#include "tools/capture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/capture_item.h"
#include "tools/capture_reader.h"
#include "tools/frame_splitter.h"
#include "tools/printable.h"
#include "transport/frame_format.h"

namespace {

void report(const std::string& what) { std::fprintf(stderr, "cfext: %s\n", what.c_str()); }

bool show_frame(const std::string& text, message_joiner& joiner, transcript& shown) {
  parsed_envelope e;
  std::string error;
  if (!parse_envelope(text, e, error)) {
    report(error + ": " + printable_line(text));
    return false;
  }
  std::string joined;
  if (shown.take(text, e, joiner, joined, error) != join_result::refused) return true;
  report(error);
  return false;
}

bool show_stream(std::FILE* input, const std::string& ahead, transcript& shown) {
  frame_splitter splitter(frame_length_limit - 1);
  message_joiner joiner;
  bool in_order = true;
  char bytes[4096];
  splitter.feed(ahead);
  while (const std::size_t count = std::fread(bytes, 1, sizeof bytes, input)) {
    splitter.feed({bytes, count});
    while (const std::optional<std::string> text = splitter.next()) {
      if (!show_frame(*text, joiner, shown)) in_order = false;
    }
    if (splitter.out_of_step() || shown.failed()) break;
  }
  std::string complaint = splitter.complaint();
  if (complaint.empty() && joiner.unfinished() != 0) {
    complaint = std::to_string(joiner.unfinished()) + " messages are unfinished";
  }
  if (std::ferror(input) != 0) complaint = "can't read the whole capture";
  if (shown.failed()) complaint = "can't write to standard output";
  if (!complaint.empty()) report(complaint);
  return in_order && complaint.empty();
}

std::string frames_of(const capture_item& item) {
  std::string text;
  for (const frame_run& run : item.frames) {
    text += text.empty() ? "in " : " + ";
    if (run.count != 1) text += std::to_string(run.count) + " * ";
    text += std::to_string(run.size);
  }
  return text + " bytes";
}

std::string comment_of(const capture_item& item) {
  if (item.kind == capture_kind::start) {
    std::string text = item.time.substr(0, 10) + ' ' + item.host;
    for (const std::string& argument : item.arguments) text += ' ' + argument;
    return text + (item.with_values ? ", with values" : ", values hidden");
  }
  if (item.kind == capture_kind::unread) {
    return std::to_string(item.bytes) + " bytes from the " + (item.from_host ? "host" : "browser") +
           ": " + item.reason;
  }
  return "the host ended with exit value " +
         (item.exit_value ? std::to_string(*item.exit_value) : std::string("unknown")) +
         (item.reason.empty() ? "" : "; not all is recorded: " + item.reason);
}

// The time of day is enough: the first line of a session has the date.
void show_item(const capture_item& item, transcript& shown) {
  const std::string clock = item.time.size() > 23 ? item.time.substr(11, 12) + ' ' : "";
  if (item.kind != capture_kind::message) return shown.line(clock + "# ", comment_of(item));
  const char* const arrow = item.from_host ? "< " : "> ";
  if (shown.shows_frames()) shown.line(clock + arrow, frames_of(item));
  shown.line(clock + arrow, item.message);
}

bool show_input(std::FILE* input, transcript& shown) {
  char start[2];
  const std::string ahead(start, std::fread(start, 1, sizeof start, input));
  if (!capture_reader::starts_capture(ahead)) return show_stream(input, ahead, shown);
  std::string error;
  capture_reader reader(input, ahead);
  while (const std::optional<capture_item> item = reader.next(error)) show_item(*item, shown);
  if (shown.failed()) error = "can't write to standard output";
  if (!error.empty()) report(error);
  return error.empty();
}

}  // namespace

bool show_capture(const std::string& file, transcript& shown) {
  if (file == "-") return show_input(stdin, shown);
  std::FILE* const input = std::fopen(file.c_str(), "rb");
  if (input == nullptr) {
    report("can't read the capture " + file + ": " + std::strerror(errno));
    return false;
  }
  const bool good = show_input(input, shown);
  std::fclose(input);
  return good;
}
