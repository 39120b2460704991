// Registers the native-messaging host with browsers, and finds out why a browser doesn't start it.

#include <cstdio>
#include <string>

#include "platform/files.h"
#include "tools/host_location.h"
#include "tools/load_examination.h"
#include "tools/setup/doctor.h"
#include "tools/setup/recording.h"
#include "tools/setup/registration.h"

namespace {

enum exit_value {
  exit_good = 0,
  exit_failed = 1,
};

exit_value fail(const std::string& what) {
  std::fprintf(stderr, "cfsetup: %s\n", what.c_str());
  return exit_failed;
}

exit_value print(const report& done, const setup_options& options) {
  const std::string text = options.json ? done.as_json() : done.as_text();
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    return fail("can't write to standard output");
  }
  return done.has_faults() ? exit_failed : exit_good;
}

std::string host_of(const setup_options& options) {
  return options.host.empty() ? platform::program_file_name(own_host_path()) : options.host;
}

exit_value install_host(const setup_options& options) {
  const std::string host = host_of(options);
  if (!platform::look_at(host).executable && !options.force) {
    return fail("there is no program " + host +
                ". Name the host with --host, or register it nevertheless with --force");
  }
  report done("install");
  std::string error;
  if (options.record.empty()) {
    install(options, host, host, done);
  } else if (options.dry_run ||
             prepare_recording(options.record, host, options.with_values, error)) {
    install(options, recording_program(options.record), host, done);
  } else {
    return fail(error);
  }
  return print(done, options);
}

// After repairs a second examination decides.
exit_value examine_all(const setup_options& options) {
  report found("doctor");
  repair_list repairs;
  examine(options, host_of(options), found, repairs);
  if (!options.fix) return print(found, options);
  if (options.dry_run) {
    repairs.tell(found);
    return print(found, options);
  }
  report done("doctor");
  repairs.run(done);
  repair_list ignored;
  examine(options, host_of(options), done, ignored);
  return print(done, options);
}

exit_value run(const setup_options& options) {
  report done(options.command == setup_command::list ? "list" : "remove");
  switch (options.command) {
    case setup_command::install:
      return install_host(options);
    case setup_command::doctor:
      return examine_all(options);
    case setup_command::remove:
      remove(options, host_of(options), done);
      break;
    case setup_command::list:
      list(options, done);
      break;
  }
  return print(done, options);
}

}  // namespace

int main(int argc, char** argv) {
  serve_load_examination(argc, argv);
  setup_options options;
  if (const auto value = parse_cfsetup_options(argc, argv, options)) return *value;
  return run(options);
}
