// Shows the diagnostics of running hosts, each line with the time of its arrival.

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>

#include "platform/debug_viewer.h"
#include "tools/printable.h"

namespace {

constexpr const char* usage =
    "Usage: cfdebug\n"
    "Shows what this user's hosts report, until it is interrupted. A host reports only when its\n"
    "configuration says so: \"dump=1\" in the section [coffer] of Orvanta/coffer.ini in the "
    "system's\n"
    "configuration folder (/etc). The lines can hold passwords.\n"
    "\n"
    "  --help  shows this text\n"
    "\n"
    "Example: cfdebug | grep Malformed\n";

std::string time_stamp() {
  using std::chrono::system_clock;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto thousandths =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  char clock[16] = "";
  std::strftime(clock, sizeof clock, "%H:%M:%S", std::localtime(&seconds));
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%s.%03d", clock, static_cast<int>(thousandths));
  return stamp;
}

std::string_view without_line_end(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
  return line;
}

// False once nobody reads the lines any more.
bool show(const std::string& line) {
  std::printf("%s %s\n", time_stamp().c_str(), printable_line(without_line_end(line)).c_str());
  return std::fflush(stdout) == 0;
}

int view() {
  std::string error;
  const auto viewer = platform::debug_viewer::open(error);
  if (viewer == nullptr) {
    std::fprintf(stderr, "cfdebug: %s\n", error.c_str());
    return 1;
  }
  std::string line;
  while (viewer->receive(line)) {
    if (!show(line)) return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) return view();
  const bool help = std::strcmp(argv[1], "--help") == 0;
  std::fputs(usage, help ? stdout : stderr);
  return help ? 0 : 2;
}
