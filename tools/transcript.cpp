#include "tools/transcript.h"

#include <cstdio>

#include "tools/printable.h"

namespace {

std::string arrow(bool from_host) { return from_host ? "< " : "> "; }

}  // namespace

void transcript::comment(std::string_view text) {
  if (messages_ == shown_messages::all) line({}, text);
}

void transcript::message(bool from_host, std::string_view text) {
  if (messages_ == shown_messages::all) {
    line(arrow(from_host), text);
  } else if (messages_ == shown_messages::answers && from_host) {
    line({}, text);
  }
}

void transcript::frame(bool from_host, std::string_view envelope) {
  if (!frames_) return;
  line(arrow(from_host) + std::to_string(envelope.size()) + ' ', envelope);
}

join_result transcript::take(const std::string& text, const parsed_envelope& e,
                             message_joiner& joiner, std::string& joined, std::string& error) {
  frame(e.from_host, text);
  const join_result result = joiner.add(e, joined, error);
  if (result == join_result::complete) message(e.from_host, joined);
  return result;
}

bool transcript::failed() const {
  const checked_lock lock(mutex_);
  return failed_;
}

void transcript::line(std::string_view mark, std::string_view text) {
  const std::string whole = std::string(mark) + printable_line(text) + '\n';
  const checked_lock lock(mutex_);
  if (std::fwrite(whole.data(), 1, whole.size(), stdout) != whole.size()) failed_ = true;
  if (std::fflush(stdout) != 0) failed_ = true;
}
