// Shows the diagnostics of running hosts, each line with the time of its arrival.

#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>

#include "host/diagnostics/diagnostics.h"
#include "platform/debug_viewer.h"
#include "platform/platform.h"
#include "tools/command_line.h"
#include "tools/printable.h"

namespace {

constexpr char description[] =
    R"(Shows the diagnostics of this user's hosts until it is interrupted. A host writes diagnostics only
if its configuration says so: "dump=1" in the section [coffer] of Orvanta/coffer.ini in the system's
configuration folder (/etc on Linux). The lines can contain passwords.)";

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

std::string narrow(const wide_char* text, std::size_t length) {
  std::string narrowed(3 * length, '\0');
  narrowed.resize(
      platform::utf16_to_utf8(text, static_cast<std::uint32_t>(length), narrowed.data()));
  return narrowed;
}

// Nobody should wait for lines that never come.
void warn_if_off() {
  read_dump_switch();
  if (!dump_off) return;
  wide_char value[max_dump_value] = {};
  const std::size_t length = dump_switch_text(value);
  const std::string why = length == 0
                              ? "Orvanta/coffer.ini has no \"dump\" in the section [coffer]"
                              : "the value \"" + printable_line(narrow(value, length)) +
                                    "\" of \"dump\" in Orvanta/coffer.ini doesn't count as on";
  std::fprintf(stderr, "cfdebug: diagnostics are off: %s. Set dump=1 there and restart the hosts\n",
               why.c_str());
}

int view() {
  std::string error;
  const auto viewer = platform::debug_viewer::open(error);
  if (viewer == nullptr) {
    std::fprintf(stderr, "cfdebug: %s\n", error.c_str());
    return 1;
  }
  warn_if_off();
  std::string line;
  while (viewer->receive(line)) {
    if (!show(line)) return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(description, "cfdebug");
  add_common_options(app);
  app.footer("Example: cfdebug | grep Malformed");
  if (const auto value = parse_command_line(app, {argv + (argc > 0), argv + argc})) return *value;
  return view();
}
