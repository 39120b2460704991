#include "tools/setup/host_examination.h"

#include <cstdio>

#include "platform/files.h"
#include "tools/setup/live_start.h"

namespace {

// How the host says why it can't work.
constexpr int no_library = 1;
constexpr int no_interface = 2;

void look_at_writers(const char* title, const std::string& path, report& out) {
  if (!platform::others_may_write(path)) return;
  out.add({title, severity::warning, "writable-by-others",
           path + " can be changed by other users, who would learn your passwords",
           "Let only its owner write there."});
}

std::string milliseconds(std::chrono::microseconds duration) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(duration.count()) / 1000);
  return text;
}

report_entry judge(const char* title, const std::string& path, const std::string& library,
                   const live_start& result) {
  const auto fault = [title](const char* id, std::string text, std::string advice) {
    return report_entry{title, severity::fault, id, std::move(text), std::move(advice)};
  };
  if (!result.error.empty()) {
    return fault("host-not-executable", result.error, "Install cfhost again.");
  }
  if (!result.exit_value.has_value()) {
    return fault("host-hangs", path + " didn't end when its input did",
                 "Update the agent, whose library may hold it up.");
  }
  switch (*result.exit_value) {
    case 0:
      return {title,
              severity::good,
              "started",
              path + " starts and ends as it should (" + milliseconds(result.duration) + ')',
              {}};
    case no_library:
      return fault("library-unloadable",
                   path + " ended with exit value 1: it can't load " + library,
                   "Install the agent again, for this system and processor.");
    case no_interface:
      return fault("library-refuses",
                   path + " ended with exit value 2: " + library + " doesn't give its interface",
                   "Update the agent; this library is too old, too new, or none of the agent's.");
    default:
      return fault("host-fails",
                   path + " ended with exit value " + std::to_string(*result.exit_value),
                   "Is that cfhost? Run cfsetup install with --force if it isn't.");
  }
}

}  // namespace

void examine_host(const char* title, const std::string& path,
                  const std::vector<std::string>& arguments, report& out) {
  const platform::file_facts host = platform::look_at(path);
  if (!host.exists || host.is_folder) {
    out.add({title, severity::fault, "host-missing", "there is no program " + path,
             "Install cfhost, or run cfsetup install with --host and --force."});
    return;
  }
  if (!host.executable) {
    out.add({title, severity::fault, "host-not-executable", path + " can't be run by this user",
             "Install cfhost again, or make the file executable."});
    return;
  }
  // A linked host looks for its library beside itself, not beside the link.
  const std::string file = platform::started_file(path);
  const std::string folder = platform::folder_of(file);
  const std::string library = platform::path_below(folder, platform::library_file_name("cfagent"));
  if (file != path) look_at_writers(title, platform::folder_of(path), out);
  look_at_writers(title, folder, out);
  look_at_writers(title, file, out);
  if (platform::look_at(library).exists) {
    look_at_writers(title, library, out);
  } else {
    out.add({title, severity::fault, "library-missing", "there is no " + library,
             "Install the agent: the host ends with exit value 1 without its library."});
    return;
  }
  out.add(judge(title, path, library, start_host(path, arguments)));
}
