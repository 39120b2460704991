// Plays browser and extension to a native-messaging host: sends it requests and shows its
// notifications.

#include <cstdio>
#include <string>
#include <utility>

#include "platform/child_process.h"
#include "platform/platform.h"
#include "tools/capture.h"
#include "tools/cfext_options.h"
#include "tools/host_location.h"
#include "tools/host_session.h"
#include "tools/method_advice.h"
#include "tools/replay.h"
#include "tools/request_source.h"
#include "tools/transcript.h"

namespace {

enum exit_value {
  exit_good = 0,
  exit_failed = 1,
};

exit_value fail(const std::string& what) {
  std::fprintf(stderr, "cfext: %s\n", what.c_str());
  return exit_failed;
}

// The host is silent about a method that it doesn't know.
void warn_of_method(const request_item& item) {
  const std::string advice = method_advice(item.text);
  if (advice.empty()) return;
  std::fprintf(stderr, "cfext: warning: %s: %s\n", item.place.c_str(), advice.c_str());
}

// Sends all requests. False, with the reason in `error`, at one that can't be sent. If the session
// is over, its own reason stands.
bool send_requests(request_source& source, const cfext_options& options, transcript& shown,
                   host_session& session, std::string& error) {
  request_item item;
  while (session.failure().empty() && !shown.failed() && source.next(item, error)) {
    // Anything the host says unasked belongs to the lines above the first gap or request.
    if (item.kind != item_kind::comment) session.wait_quiet();
    if (item.kind == item_kind::request) {
      warn_of_method(item);
      session.send(item.text, options.frame_size);
      session.wait_quiet();
    } else {
      shown.comment(item.text);
    }
  }
  session.wait_quiet();
  return error.empty();
}

// The host's own exit value comes first: it says most about why the rest failed.
exit_value report(std::optional<int> host_value, const std::string& failure) {
  if (host_value.value_or(0) != 0) {
    fail("the host ended with exit value " + std::to_string(*host_value));
  }
  if (!failure.empty()) fail(failure);
  return failure.empty() && host_value == 0 ? exit_good : exit_failed;
}

exit_value run_session(const cfext_options& options) {
  std::string error;
  request_source source(options);
  if (!source.open(error)) return fail(error);
  const std::string path = options.host.empty() ? own_host_path() : options.host;
  if (path.empty()) return fail("can't find out where cfext lies; name the host with --host");
  auto host = platform::child_process::start(path, {}, error);
  if (host == nullptr) return fail(error);

  transcript shown(options.frames, options.echo ? shown_messages::all : shown_messages::answers);
  host_session session(std::move(host), shown, std::chrono::milliseconds(options.wait_ms));
  const bool all_sent = send_requests(source, options, shown, session, error);
  const std::optional<int> host_value = session.finish();
  if (!all_sent) fail(error);
  if (shown.failed()) fail("can't write to standard output");
  const exit_value value = report(host_value, session.failure());
  return all_sent && !shown.failed() ? value : exit_failed;
}

exit_value decode(const cfext_options& options) {
  transcript shown(options.frames, shown_messages::all);
  return show_capture(options.capture, shown) ? exit_good : exit_failed;
}

exit_value replay(const cfext_options& options) {
  const bool alike =
      replay_capture(options.replay, options.host, std::chrono::milliseconds(options.wait_ms));
  return alike ? exit_good : exit_failed;
}

}  // namespace

int main(int argc, char** argv) {
  platform::prepare_standard_streams();
  cfext_options options;
  if (const auto value = parse_cfext_options(argc, argv, options)) return *value;
  if (!options.replay.empty()) return replay(options);
  return options.capture.empty() ? run_session(options) : decode(options);
}
