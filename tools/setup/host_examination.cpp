#include "tools/setup/host_examination.h"

#include <algorithm>

#include "platform/file_rights.h"
#include "platform/files.h"
#include "tools/setup/commands.h"
#include "tools/setup/start_verdict.h"
#include "tools/tap_settings.h"

namespace {

constexpr std::size_t max_script_size = 1 << 16;

// A script starts the host wherever that lies: only a start tells about the library there.
bool is_script(const std::string& path) {
  std::string text, ignored;
  return platform::read_file(path, max_script_size, text, ignored) &&
         text.find('\0') == std::string::npos;
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
    may_lack_library_ = is_script(host);
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
    // Chromium leaves a script without a first line to the shell, Firefox doesn't start it.
    const auto scripts = start_.kind == id_form::chromium ? platform::bare_scripts::are_run
                                                          : platform::bare_scripts::are_refused;
    judge_start(start_, start_host(start_.path, start_.arguments, scripts), library_, out_);
  }

 private:
  void fault(const char* id, std::string text, std::string advice) {
    out_.add({start_.title, severity::fault, id, std::move(text), std::move(advice)});
  }

  bool look_at_files() {
    const bool has_library = may_lack_library_ || platform::look_at(library_).exists;
    const platform::file_facts host = platform::look_at(start_.path);
    const bool is_there = host.exists && !host.is_folder;
    if (!is_there) {
      fault("host-missing", "there is no program " + start_.path,
            "Install cfhost there, or register the one that you have. Run: " + start_.install);
    } else if (!host.executable) {
      fault(
          "host-not-executable", start_.path + " can't be run by this user",
          "Install cfhost there again, or register the one that you have. Run: " + start_.install);
    } else if (!has_library) {
      fault("library-missing", "there is no " + library_,
            "Install the agent: the host ends with exit value 1 without its library.");
    }
    return is_there && host.executable && has_library;
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

  const host_start& start_;
  report& out_;
  repair_list& repairs_;
  std::string library_;
  bool may_lack_library_ = false;
  std::vector<std::string> decisive_;  // whoever may write one of them decides what is run
};

}  // namespace

void examine_host(const host_start& start, report& out, repair_list& repairs) {
  host_examination(start, out, repairs).run();
}
