#include "tools/check/check_options.h"

#include "tools/command_line.h"

namespace {

constexpr int longest_time_ms = 600'000;

constexpr char usage[] =
    R"(Usage: cfcheck [OPTION...] LIBRARY
Plays the host against a client library, in a process of its own: loads the library, asks for its
interface, registers an observer, posts one message of each kind, examines what the library notifies
of, and unloads it. Says what is wrong and what to do about it.

The library does what it would do with a host: it may ask for a password, open its console, and lock
its store at the end.

  --wait MS       how long to wait for notifications after the last message (default: 500)
  --timeout MS    how long one call of the library may take (default: 5000)
  --json          report in JSON
  --help          show this text
  --version       show the version

Exit value: 0 if there is no fault (warnings don't count), 1 if there is one, 2 if the arguments are
wrong.

void add_time(CLI::App& app, const char* name, std::chrono::milliseconds& out, const char* text) {
  app.add_option_function<int>(
         name, [&out](int given) { out = std::chrono::milliseconds(given); }, text)
      ->type_name("MS")
      ->check(CLI::Range(0, longest_time_ms).description(""));
}

}  // namespace

std::optional<int> parse_check_options(int argc, char** argv, check_options& options) {
  for (int at = 1; at < argc; ++at) {
    const std::string_view argument = argv[at];
    if (argument == "--help") return std::fputs(usage, stdout), 0;
    if (argument == "--version") return std::puts("cfcheck " CFHOST_VERSION), 0;
    if (argument == "--json") {
      options.json = true;
    } else if (argument == "--wait" || argument == "--timeout") {
      auto& time = argument == "--wait" ? options.wait : options.timeout;
      if (++at == argc || !read_time(argv[at], time)) {
        return refuse(std::string(argument) + " takes milliseconds, 0 to " +
                      std::to_string(longest_time));
      }
    } else if (argument.empty() || argument.front() == '-' || !options.library.empty()) {
      return refuse("\"" + std::string(argument) + "\" is an unknown option, or a second library");
    } else {
      options.library = argument;
    }
  }
  if (options.library.empty()) return refuse("give the path of a library");
  return std::nullopt;
}
