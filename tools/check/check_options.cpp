#include "tools/check/check_options.h"

#include "tools/command_line.h"

namespace {

constexpr int longest_time_ms = 600'000;

constexpr char description[] =
    R"(Plays the host to a client library, in a separate process: loads the library, asks for its
interface, registers an observer, posts a message of each kind, examines the notifications, and
unloads the library. Reports what is wrong and what to do.

The library acts as it does with a host: it may ask for a password, open its console, and finally
lock its store.)";

constexpr char footer[] =
    R"(Exit value: 0 if there is no fault (warnings don't count), 1 if there is one, 2 if the arguments
can't be used.

Example: cfcheck /usr/libexec/cfhost/cfagent.so)";

void add_time(CLI::App& app, const char* name, std::chrono::milliseconds& out, const char* text) {
  app.add_option_function<int>(
         name, [&out](int given) { out = std::chrono::milliseconds(given); }, text)
      ->type_name("MS")
      ->check(CLI::Range(0, longest_time_ms).description(""));
}

}  // namespace

std::optional<int> parse_check_options(int argc, char** argv, check_options& options) {
  CLI::App app(description, "cfcheck");
  add_common_options(app);
  app.footer(footer);
  add_time(app, "--wait", options.wait,
           "How long to wait for notifications after the last message (default: 500)");
  add_time(app, "--timeout", options.timeout,
           "How long a call of the library may take (default: 5000)");
  app.add_flag("--json", options.json, "Report in JSON");
  app.add_option("LIBRARY", options.library, "The library, as cfhost would load it")
      ->type_name("")
      ->required();
  return parse_command_line(app, std::vector<std::string>(argv + (argc > 0), argv + argc));
}
