#include "tools/capture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/frame_splitter.h"
#include "tools/printable.h"
#include "transport/frame_format.h"

namespace {

void report(const std::string& what) { std::fprintf(stderr, "cfext: %s\n", what.c_str()); }

bool show_frame(const std::string& text, message_joiner& joiner, transcript& shown) {
  envelope e;
  std::string error;
  if (!read_envelope(text, e, error)) {
    report(error + ": " + printable_line(text));
    return false;
  }
  if (shown.take(text, e, joiner, error)) return true;
  report(error);
  return false;
}

bool show_stream(std::FILE* input, transcript& shown) {
  frame_splitter splitter(frame_length_limit - 1);
  message_joiner joiner;
  bool in_order = true;
  char bytes[4096];
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

}  // namespace

bool show_capture(const std::string& file, transcript& shown) {
  if (file == "-") return show_stream(stdin, shown);
  std::FILE* const input = std::fopen(file.c_str(), "rb");
  if (input == nullptr) {
    report("can't read the capture " + file + ": " + std::strerror(errno));
    return false;
  }
  const bool good = show_stream(input, shown);
  std::fclose(input);
  return good;
}
