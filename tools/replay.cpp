#include "tools/replay.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "platform/child_process.h"
#include "tools/answer_comparison.h"
#include "tools/capture_reader.h"
#include "tools/host_session.h"
#include "tools/printable.h"
#include "tools/request_cutter.h"

namespace {

bool report_failure(const std::string& what) {
  std::fprintf(stderr, "cfext: %s\n", what.c_str());
  return false;
}

// Keeps a message of one frame in one frame where possible, even if a mark is longer than what it
// hides.
std::size_t envelope_size(const capture_item& sent) {
  if (sent.frames.empty() || (sent.frames.size() == 1 && sent.frames[0].count == 1)) {
    return max_request_envelope;
  }
  return std::clamp<std::size_t>(sent.frames[0].size, min_request_envelope, max_request_envelope);
}

class replayer {
 public:
  replayer(capture_reader& reader, const capture_item& start)
      : reader_(reader), compared_(start.with_values) {}

  bool play(host_session& session);
  bool report(host_session& session, std::optional<int> exit_value);

  // Whether the recorded host died before its input ended, and this one did too.
  bool died_alike(std::optional<int> exit_value) const {
    return end_.has_value() && end_->exit_value != 0 && end_->exit_value == exit_value;
  }

 private:
  bool play_item(host_session& session, const capture_item& item);

  capture_reader& reader_;
  answer_comparison compared_;
  std::size_t answers_ = 0;
  std::size_t unread_ = 0;
  std::optional<capture_item> end_;
};

// False if the rest of the capture can't be played. If the session is over, its own reason stands;
// it may be over early because the recorded one was, which the capture's end tells.
bool replayer::play(host_session& session) {
  std::string error;
  while (const std::optional<capture_item> item = reader_.next(error)) {
    if (item->kind == capture_kind::end) end_ = item;
    if (session.failure().empty() && !play_item(session, *item)) return false;
  }
  session.wait_quiet();
  return error.empty() || report_failure(error);
}

bool replayer::play_item(host_session& session, const capture_item& item) {
  if (item.kind == capture_kind::unread) ++unread_;
  if (item.kind != capture_kind::message) return true;
  if (item.from_host) {
    compared_.add_recorded(item.message);
    session.wait_for(++answers_);
  } else if (item.message.size() > max_request_size) {
    return report_failure("line " + std::to_string(reader_.line()) +
                          " holds more than a host takes");
  } else {
    session.send(item.message, envelope_size(item));
  }
  return true;
}

bool replayer::report(host_session& session, std::optional<int> exit_value) {
  for (const std::string& message : session.notifications()) compared_.add_received(message);
  std::vector<std::string> differences = compared_.differences();
  if (end_.has_value() && end_->exit_value != exit_value) {
    const auto shown = [](std::optional<int> v) { return v ? std::to_string(*v) : "none"; };
    differences.push_back("exit value differs: recorded " + shown(end_->exit_value) + ", now " +
                          shown(exit_value));
  }
  for (const std::string& each : differences) std::puts(printable_line(each).c_str());
  if (unread_ != 0) {
    std::printf("%zu items of the capture hold no message, and weren't sent\n", unread_);
  }
  if (!end_.has_value() || !end_->reason.empty()) {
    std::printf("the capture ends before its session%s\n",
                end_.has_value() ? (": " + printable_line(end_->reason)).c_str() : "");
  }
  std::printf("%zu answers recorded, %zu differences\n", answers_, differences.size());
  return differences.empty();
}

bool replay(std::FILE* input, const std::string& host, std::chrono::milliseconds quiet_time) {
  std::string error;
  capture_reader reader(input, {});
  const std::optional<capture_item> start = reader.next(error);
  if (!start.has_value() || start->kind != capture_kind::start) {
    return report_failure(error.empty() ? "this is no capture: it has no start" : error);
  }
  const std::string program = host.empty() ? start->host : host;
  auto process = platform::child_process::start(program, start->arguments, error);
  if (process == nullptr) return report_failure(error);
  transcript silent(false, shown_messages::none);
  host_session session(std::move(process), silent, quiet_time, true);
  replayer player(reader, *start);
  const bool played = player.play(session);
  const std::optional<int> exit_value = session.finish();
  const bool alike = player.report(session, exit_value);
  const std::string failure = player.died_alike(exit_value) ? "" : session.failure();
  return (failure.empty() || report_failure(failure)) && played && alike;
}

}  // namespace

bool replay_capture(const std::string& file, const std::string& host,
                    std::chrono::milliseconds quiet_time) {
  if (file == "-") return replay(stdin, host, quiet_time);
  std::FILE* const input = std::fopen(file.c_str(), "rb");
  if (input == nullptr)
    return report_failure("can't read the capture " + file + ": " + std::strerror(errno));
  const bool good = replay(input, host, quiet_time);
  std::fclose(input);
  return good;
}
