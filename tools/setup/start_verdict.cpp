#include "tools/setup/start_verdict.h"

#include <cstdio>
#include <utility>

#include "tools/load_examination.h"

namespace {

// How the host says why it can't work.
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

class start_verdict {
 public:
  start_verdict(const host_start& start, const std::string& library, report& out)
      : start_(start), library_(library), out_(out) {}

  void judge(const live_start& result) {
    if (!result.error.empty()) {
      fault(
          "host-not-executable", result.error,
          "Install cfhost there again, or register the one that you have. Run: " + start_.install);
    } else if (!result.exit_value.has_value()) {
      fault("host-hangs", start_.path + " didn't end when its input did",
            "Update the agent, whose library " + library_ + " may hold it up.");
    } else if (*result.exit_value == 0 && !result.took_input) {
      fault("host-ends-early",
            start_.path + " ended without reading what the browser sends: it is no host",
            "Register the cfhost that you have. Run: " + start_.install);
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

 private:
  void fault(const char* id, std::string text, std::string advice) {
    out_.add({start_.title, severity::fault, id, std::move(text), std::move(advice)});
  }

  // Loaded by itself the library tells more than the host's exit value does.
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
  const std::string& library_;
  report& out_;
};

}  // namespace

void judge_start(const host_start& start, const live_start& result, const std::string& library,
                 report& out) {
  start_verdict(start, library, out).judge(result);
}
