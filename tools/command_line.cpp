#include "tools/command_line.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace {

constexpr std::size_t help_column = 24;

// The help doesn't show which options exclude each other; that is reported when somebody combines
// them.
class help_form : public CLI::Formatter {
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string value = option->get_type_name();
    return option->get_type_size() == 0 || value.empty() ? std::string() : ' ' + value;
  }
};

std::string reason(const CLI::App& app, const CLI::ParseError& error) {
  const auto left = app.remaining();
  const bool lacks_command = app.get_require_subcommand_min() > 0 && app.get_subcommands().empty();
  if (lacks_command && !left.empty()) return "there is no command or option " + left.front();
  return error.what();
}

}  // namespace

void add_common_options(CLI::App& app) {
  // On every system a request or a path may start with a solidus.
  app.allow_windows_style_options(false);
  app.formatter(std::make_shared<help_form>());
  app.get_formatter()->column_width(help_column);
  app.set_help_flag("-h,--help", "Show this text");
  app.set_version_flag("--version", app.get_name() + " " CFHOST_VERSION, "Show the version");
}

std::optional<int> parse_command_line(CLI::App& app, std::vector<std::string> arguments) {
  try {
    // The parser expects the arguments in reverse order.
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    return std::nullopt;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    const std::string& name = app.get_name();
    std::fprintf(stderr, "%s: %s\nTry %s --help.\n", name.c_str(), reason(app, error).c_str(),
                 name.c_str());
    return exit_usage;
  }
}

void refuse_value(const std::string& reason) { throw CLI::ParseError(reason, exit_usage); }
