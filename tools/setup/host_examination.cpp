#include "tools/setup/host_examination.h"

#include <algorithm>
#include <cstdio>

#include "platform/child_process.h"
#include "platform/file_rights.h"
#include "platform/files.h"
#include "tools/load_examination.h"
#include "tools/setup/commands.h"
#include "tools/setup/live_start.h"
#include "tools/tap_settings.h"

namespace {

// The exit values by which the host says why it can't work.
constexpr int no_library = 1;
constexpr int no_interface = 2;

bool may_be_the_library(int exit_value) {
  return exit_value == no_library || exit_value == no_interface ||
         !platform::crash_of(exit_value).empty();
}

std::string milliseconds(std::chrono::microseconds duration) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(duration.count()) / 1000);
  return text;
}

class host_examination {
 public:
  host_examination(const host_start& start, report& out, repair_list& repairs)
      : start_(start), out_(out), repairs_(repairs) {
    // A host that is started through a link looks for its library beside itself, not beside the
    // link. So does one that cftap starts.
    const std::string host = recorded_host(start.path);
    const std::string folder = platform::folder_of(platform::started_file(host));
    library_ = platform::path_below(folder, platform::library_file_name("cfagent"));
    decisive_ = {start.path, library_, start.manifest};
    if (host != start.path) {
      const std::string recorder = platform::folder_of(start.path);
      decisive_.insert(decisive_.end(), {host, platform::path_below(recorder, tap_settings_name)});
    }
  }

  void run() {
    const bool is_complete = look_at_files();
    const bool is_changeable = look_at_writers();
    if (!is_complete || !start_.is_manifest_good) return;
    if (is_changeable && platform::is_superuser()) {
      out_.add({start_.title, severity::warning, "not-started",
                start_.path + " wasn't started: others may change it, and root would run what they "
                              "put there",
                "Run the doctor as the user who runs the browser."});
      return;
    }
    judge(start_host(start_.path, start_.arguments));
  }

 private:
  void fault(const char* id, std::string text, std::string advice) {
    out_.add({start_.title, severity::fault, id, std::move(text), std::move(advice)});
  }

  bool look_at_files() {
    const platform::file_facts host = platform::look_at(start_.path);
    const bool is_there = host.exists && !host.is_folder;
    if (!is_there) {
      fault("host-missing", "there is no program " + start_.path,
            "Install cfhost there, or register the one that you have. Run: " + start_.install);
    } else if (!host.executable) {
      fault(
          "host-not-executable", start_.path + " can't be run by this user",
          "Install cfhost there again, or register the one that you have. Run: " + start_.install);
    } else if (!platform::look_at(library_).exists) {
      fault("library-missing", "there is no " + library_,
            "Install the agent: the host ends with exit value 1 without its library.");
    }
    return is_there && host.executable && platform::look_at(library_).exists;
  }

  // True if others may write a file that decides what is run.
  bool look_at_writers() {
    std::vector<std::string> parts;
    for (const std::string& path : decisive_) {
      for (std::string& part : platform::parts_that_others_may_write(path)) {
        const bool known = std::find(parts.begin(), parts.end(), part) != parts.end();
        if (!known) parts.push_back(std::move(part));
      }
    }
    for (const std::string& part : parts) warn_of_writers(part);
    return !parts.empty();
  }

  void warn_of_writers(const std::string& part) {
    out_.add({start_.title, severity::warning, "writable-by-others",
              part + " can be changed by other users, who would learn your passwords",
              "Let only its owner write there. Run: chmod go-w " + shell_word(part)});
    repairs_.add({start_.title, "run chmod go-w " + shell_word(part), [part](report& out) {
                    std::string error;
                    if (platform::keep_others_from_writing(part, error)) return;
                    out.add({"", severity::fault, "fix-failed", error, {}});
                  }});
  }

  void judge(const live_start& result) {
    if (!result.error.empty()) {
      fault(
          "host-not-executable", result.error,
          "Install cfhost there again, or register the one that you have. Run: " + start_.install);
    } else if (!result.exit_value.has_value()) {
      fault("host-hangs", start_.path + " didn't end when its input did",
            "Update the agent, whose library " + library_ + " may hold it up.");
    } else if (*result.exit_value == 0) {
      out_.add(
          {start_.title,
           severity::good,
           "started",
           start_.path + " starts and ends as it should (" + milliseconds(result.duration) + ')',
           {}});
    } else if (!find_fault_of_library(*result.exit_value)) {
      judge_value(*result.exit_value);
    }
  }

  // Loading the library by itself tells more than the host's exit value does.
  bool find_fault_of_library(int value) {
    if (!may_be_the_library(value)) return false;
    auto cause = fault_of_loading(library_, own_program("cfsetup"));
    if (!cause.has_value()) return false;
    cause->subject = start_.title;
    out_.add(std::move(*cause));
    return true;
  }

  void judge_value(int value) {
    const std::string what = start_.path + " ended with exit value " + std::to_string(value);
    if (value == no_library) {
      fault("library-unloadable", what + ": it can't load " + library_,
            "Install the agent again, for this system and processor.");
    } else if (value == no_interface) {
      fault("library-refuses", what + ": " + library_ + " doesn't give its interface",
            "Update the agent; this library is too old, too new, or none of the agent's.");
    } else if (const std::string crash = platform::crash_of(value); !crash.empty()) {
      fault("host-crashes", start_.path + " crashed: " + crash,
            library_ + " can be loaded. Install cfhost again, and if that doesn't help the agent.");
    } else {
      fault("host-fails", what + ", which cfhost never does by itself",
            "Register the cfhost that you have. Run: " + start_.install);
    }
  }

  const host_start& start_;
  report& out_;
  repair_list& repairs_;
  std::string library_;
  std::vector<std::string> decisive_;  // whoever can write one of these decides what is run
};

}  // namespace

void examine_host(const host_start& start, report& out, repair_list& repairs) {
  host_examination(start, out, repairs).run();
}
