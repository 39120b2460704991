// Registers the native-messaging host with browsers, and finds out why one doesn't start it.

#include <cstdio>
#include <string>

#include "platform/files.h"
#include "tools/host_location.h"
#include "tools/setup/doctor.h"
#include "tools/setup/registration.h"

namespace {

enum exit_value {
  exit_good = 0,
  exit_failed = 1,
  exit_usage = 2,
};

exit_value fail(exit_value value, const std::string& what) {
  std::fprintf(stderr, "cfsetup: %s\n", what.c_str());
  return value;
}

exit_value print(const report& done, const setup_options& options) {
  const std::string text = options.json ? done.as_json() : done.as_text();
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    return fail(exit_failed, "can't write to standard output");
  }
  return done.has_faults() ? exit_failed : exit_good;
}

exit_value install_host(const setup_options& options) {
  const std::string host =
      options.host.empty() ? platform::program_file_name(own_host_path()) : options.host;
  if (!platform::look_at(host).executable && !options.force) {
    return fail(exit_failed, "there is no program " + host +
                                 ". Name the host with --host, or register it nevertheless with "
                                 "--force");
  }
  report done("install");
  install(options, host, done);
  return print(done, options);
}

}  // namespace

int main(int argc, char** argv) {
  setup_options options;
  std::string error;
  if (!parse_options({argv + (argc > 0), argv + argc}, options, error)) {
    return fail(exit_usage, error + "\nTry cfsetup --help.");
  }
  switch (options.command) {
    case setup_command::help:
      std::fputs(setup_usage, stdout);
      return exit_good;
    case setup_command::version:
      std::puts("cfsetup " CFHOST_VERSION);
      return exit_good;
    case setup_command::install:
      return install_host(options);
    case setup_command::remove: {
      report done("remove");
      remove(options, done);
      return print(done, options);
    }
    case setup_command::list: {
      report done("list");
      list(options, done);
      return print(done, options);
    }
    case setup_command::doctor: {
      report done("doctor");
      examine(options, done);
      return print(done, options);
    }
  }
  return exit_usage;
}
