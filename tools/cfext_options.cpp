#include "tools/cfext_options.h"

#include <charconv>
#include <string_view>

const char* const cfext_usage =
    R"(Usage: cfext [OPTION...] [REQUEST...]
       cfext --decode FILE [--frames]
Plays browser and extension towards a native-messaging host: starts it, sends it the requests one
after the other, and prints each notification that comes back as one line of JSON. Requests are JSON
texts; without any they are read from standard input, one per line. Blank lines and lines that start
with # are skipped.

  --host PATH       the host to start (default: cfhost beside cfext, or ../libexec/cfhost/cfhost)
  --file FILE       read the requests from FILE; - is standard input
  --wait MS         how long the host has to be quiet before the next request goes out, and before
                    its input is closed after the last one (default: 200)
  --echo            print the requests too, behind "> ", and the lines that are skipped;
                    notifications then stand behind "< "
  --frames          print each frame, as "> " or "< ", the length and the text of its envelope
  --frame-size N    largest envelope to send, 64 to 8191 bytes (default: 8191)
  --raw             send requests as they are; otherwise the first that is no JSON ends the session
  --decode FILE     print the messages in a captured stream of frames; - is standard input
  --help            show this text

Exit value: 0 when all went well, 1 when something failed, 2 when the arguments can't be used. The
exit value of the host is reported on standard error unless it is 0; that of cfhost is 1 when it
can't load the agent library that has to lie beside it, and 2 when that has no client interface.

Example: cfext --echo '{"method":"get-settings"}'
)";

namespace {

constexpr std::size_t max_wait_ms = 600'000;

struct text_option {
  std::string_view name;
  std::string cfext_options::*value;
};

struct number_option {
  std::string_view name;
  std::size_t cfext_options::*value;
  std::size_t least;
  std::size_t most;
};

struct switch_option {
  std::string_view name;
  bool cfext_options::*value;
};

constexpr text_option text_options[] = {
    {"--host", &cfext_options::host},
    {"--file", &cfext_options::file},
    {"--decode", &cfext_options::capture},
};

constexpr number_option number_options[] = {
    {"--frame-size", &cfext_options::frame_size, min_request_envelope, max_request_envelope},
    {"--wait", &cfext_options::wait_ms, 0, max_wait_ms},
};

constexpr switch_option switch_options[] = {
    {"--frames", &cfext_options::frames},
    {"--echo", &cfext_options::echo},
    {"--raw", &cfext_options::raw},
    {"--help", &cfext_options::help},
};

template <class Option, std::size_t Count>
const Option* find(const Option (&options)[Count], std::string_view name) {
  for (const Option& option : options) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

bool set_number(const number_option& option, const std::string& text, cfext_options& options,
                std::string& error) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure == std::errc() && stop == end && number >= option.least && number <= option.most) {
    options.*option.value = number;
    return true;
  }
  error = std::string(option.name) + " takes a number from " + std::to_string(option.least) +
          " to " + std::to_string(option.most) + ", not \"" + text + "\"";
  return false;
}

// An option that needs the argument behind it, which `value` points at unless there is none.
bool set_value(const std::string& name, const std::string* value, cfext_options& options,
               std::string& error) {
  const text_option* const text = find(text_options, name);
  const number_option* const number = find(number_options, name);
  if (text == nullptr && number == nullptr) {
    error = "there is no option " + name;
    return false;
  }
  if (value == nullptr || value->empty()) {
    error = name + " needs a value behind it";
    return false;
  }
  if (number != nullptr) return set_number(*number, *value, options, error);
  options.*text->value = *value;
  return true;
}

}  // namespace

bool parse_options(const std::vector<std::string>& arguments, cfext_options& options,
                   std::string& error) {
  bool only_requests = false;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string& argument = arguments[at];
    if (only_requests || argument.empty() || argument.front() != '-') {
      options.requests.push_back(argument);
    } else if (argument == "--") {
      only_requests = true;
    } else if (const switch_option* const found = find(switch_options, argument)) {
      options.*found->value = true;
    } else {
      const std::string* const value = at + 1 < arguments.size() ? &arguments[at + 1] : nullptr;
      if (!set_value(argument, value, options, error)) return false;
      ++at;
    }
  }
  if (options.requests.empty() && options.file.empty()) options.file.assign(1, '-');
  return true;
}
