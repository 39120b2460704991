#include "tools/cfext_options.h"

#include "tools/command_line.h"

namespace {

constexpr std::size_t max_wait_ms = 600'000;

constexpr char description[] =
    R"(Plays a browser and its extension against a native-messaging host: starts the host, sends it the
requests one after the other, and prints each notification as one line of JSON. Requests are JSON
texts; if none is given, they are read from standard input, one per line. Blank lines and lines that
start with # are skipped.)";

constexpr char footer[] =
    R"(Exit value: 0 if all went well, 1 if something failed or differs, 2 if the arguments are wrong. If the
host's exit value isn't 0, it is reported on standard error. cfhost ends with 1 if it can't load the client
library beside it, and with 2 if that library doesn't give the interface.

Example: cfext --echo '{"method":"get-settings"}')";

void add_text(CLI::App& app, const char* name, const char* value, std::string& out,
              const char* text) {
  app.add_option(name, out, text)->type_name(value)->check([](const std::string& given) {
    return std::string(given.empty() ? "a value is needed" : "");
  });
}

void add_number(CLI::App& app, const char* name, const char* value, std::size_t& out,
                std::size_t least, std::size_t most, const char* text) {
  app.add_option(name, out, text)->type_name(value)->check(CLI::Range(least, most).description(""));
}

// The option parser would split a text in brackets as a list. A leading blank keeps it whole, and
// is removed again later.
bool is_in_brackets(const std::string& text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start != std::string::npos && text[start] == '[' && text.back() == ']';
}

std::vector<std::string> kept_whole(int argc, char** argv) {
  std::vector<std::string> arguments(argv + (argc > 0), argv + argc);
  for (std::string& each : arguments) {
    if (is_in_brackets(each)) each.insert(0, 1, ' ');
  }
  return arguments;
}

void restore(cfext_options& options) {
  for (std::string* const each :
       {&options.host, &options.file, &options.capture, &options.replay}) {
    if (is_in_brackets(*each)) each->erase(0, 1);
  }
  for (std::string& each : options.requests) {
    if (is_in_brackets(each)) each.erase(0, 1);
  }
}

void add_options(CLI::App& app, cfext_options& options) {
  add_text(app, "--host", "PATH", options.host,
           "The host to start (default: cfhost beside cfext, or ../libexec/cfhost/cfhost)");
  add_text(app, "--file", "FILE", options.file, "Read the requests from FILE; - is standard input");
  add_number(app, "--wait", "MS", options.wait_ms, 0, max_wait_ms,
             "How long the host must be quiet before the next request is sent, and before\n"
             "its input is closed after the last one (default: 200)");
  app.add_flag("--echo", options.echo,
               "Print the requests too, after \"> \", and the lines that are skipped;\n"
               "notifications are then printed after \"< \"");
  app.add_flag("--frames", options.frames,
               "Print each frame: \"> \" or \"< \", the length and the text of its\nenvelope");
  add_number(app, "--frame-size", "N", options.frame_size, min_request_envelope,
             max_request_envelope, "Largest envelope to send, 64 to 8191 bytes (default: 8191)");
  app.add_flag(
      "--raw", options.raw,
      "Send requests as they are; otherwise the first one that isn't JSON ends\nthe session");
  add_text(app, "--decode", "FILE", options.capture,
           "Print the messages in a capture made by cftap, or in a raw stream of\n"
           "frames; - is standard input");
  add_text(app, "--replay", "CAPTURE", options.replay,
           "Send the host (default: the recorded one) what the browser sent in a capture\n"
           "made by cftap, and show where its answers or its exit value differ; ids and\n"
           "hidden values don't count");
}

}  // namespace

std::optional<int> parse_cfext_options(int argc, char** argv, cfext_options& options) {
  CLI::App app(description, "cfext");
  add_common_options(app);
  app.footer(footer);
  add_options(app, options);
  app.add_option("REQUEST", options.requests, "Sent before those in the file")->type_name("");
  const auto value = parse_command_line(app, kept_whole(argc, argv));
  restore(options);
  if (options.requests.empty() && options.file.empty()) options.file.assign(1, '-');
  return value;
}
