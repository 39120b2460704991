// Runs between a browser and the host, and keeps a capture of what passes.

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/module_folder.h"
#include "platform/platform.h"
#include "platform/raw_streams.h"
#include "tools/host_location.h"
#include "tools/tap/recorder.h"
#include "tools/tap/relay.h"
#include "tools/tap_settings.h"

namespace {

// No host ends with this value.
constexpr int exit_no_host = 125;

constexpr const char* usage =
    R"(Usage: cftap [ARGUMENT...]
Stands between a browser and the native-messaging host: starts the host with the same arguments,
passes all bytes on unchanged, and keeps a capture of them in its own folder. A browser starts it
after "cfsetup install --record FOLDER", which puts a copy of it into FOLDER.

The file cftap.json beside it holds one object. All its members are optional:

  "host"         the host to start (default: cfhost beside cftap, or ../libexec/cfhost/cfhost)
  "with_values"  true: keep the values of inputs and settings, passwords included; otherwise each
                 is replaced by a mark of its length, and addresses lose query and fragment
  "limit_mib"    how large a capture may get in MiB, 1 to 4096 (default: 64)

Without that file nothing is recorded. cfext --decode shows a capture, cfext --replay plays it.

  --help         show this text, if it is the only argument
  --version      show the version, if it is the only argument

Exit value: the host's; 128 plus the signal's number if a signal ended it; 125 if the host can't be
started.
)";

void complain(const std::string& what) { std::fprintf(stderr, "cftap: %s\n", what.c_str()); }

// Never freed: its thread lives as long as the process.
recorder* start_recorder(const tap_settings& settings, const std::string& host,
                         const std::vector<std::string>& arguments) {
  capture_item start;
  start.kind = capture_kind::start;
  start.time = capture_time_text(std::chrono::system_clock::now());
  start.host = host;
  start.arguments = arguments;
  start.with_values = settings.with_values;
  return new recorder(platform::module_folder(), start, settings.limit_mib * 1024 * 1024);
}

int run(const std::vector<std::string>& arguments) {
  tap_settings settings;
  std::string error;
  const bool recording = read_tap_settings(platform::module_folder(), settings, error);
  if (!recording) complain("nothing is recorded: " + error);
  const std::string path = settings.host.empty() ? own_host_path() : settings.host;
  const auto host = platform::child_process::start(path, arguments, error);
  if (host == nullptr) {
    complain(error);
    return exit_no_host;
  }
  platform::pass_on_end_requests(host->process_id());
  recorder* const record = recording ? start_recorder(settings, path, arguments) : nullptr;
  const int exit_value = relay(*host, record).run();
  if (record != nullptr) record->finish(exit_value);
  platform::leave_now(exit_value);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0), argv + argc);
  const std::string only = arguments.size() == 1 ? arguments.front() : std::string();
  if (only == "--help" || only == "--version") {
    std::fputs(only == "--help" ? usage : "cftap " CFHOST_VERSION "\n", stdout);
    return 0;
  }
  platform::forbid_memory_dumps();
  platform::occupy_standard_streams();
  platform::prepare_standard_streams();
  return run(arguments);
}
