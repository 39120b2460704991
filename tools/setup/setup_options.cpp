#include "tools/setup/setup_options.h"

#include <string_view>

#include "platform/files.h"
#include "tools/setup/extension_id.h"

const char* const setup_usage =
    R"(Usage: cfsetup install --extension-id ID... [OPTION...]
       cfsetup remove [OPTION...]
       cfsetup list [OPTION...]
       cfsetup doctor [--extension-id ID...] [OPTION...]
Registers the native-messaging host with browsers, and finds out why one doesn't start it.

  install   lets the extensions, and no others, start the host
  remove    takes the registration back
  list      shows where the host is registered
  doctor    examines every registration, starts the host as the browser would, and says what is
            wrong and what to do

  --extension-id ID   32 letters from a to p; for Firefox name@domain or a {GUID}. Each browser takes
                      the ids of its own form
  --browser NAME      chrome, chromium, edge, brave, vivaldi, opera, firefox or all; may be repeated
                      (default: those that are installed or that this user has started before)
  --system            for all users instead of this one
  --host PATH         the host to register (default: cfhost beside cfsetup, or
                      ../libexec/cfhost/cfhost)
  --force             overwrite a registration that names another host
  --user-data-dir DIR the browser is started with this folder for its data (not on Windows)
  --root DIR          look at, and change, the system below DIR (not on Windows)
  --dry-run           only tell what would be written or removed
  --json              report in JSON
  --help              show this text
  --version           show the version

Exit value: 0 when all is well, 1 when something failed or the doctor found a fault (warnings don't
count), 2 when the arguments can't be used.

Example: cfsetup install --browser chromium --extension-id abcdefghijklmnopabcdefghijklmnop
)";

namespace {

struct named_command {
  std::string_view name;
  setup_command command;
};

constexpr named_command commands[] = {
    {"install", setup_command::install}, {"remove", setup_command::remove},
    {"list", setup_command::list},       {"doctor", setup_command::doctor},
    {"--help", setup_command::help},     {"--version", setup_command::version},
};

struct switch_option {
  std::string_view name;
  bool setup_options::*value;
};

constexpr switch_option switch_options[] = {
    {"--system", &setup_options::system},
    {"--force", &setup_options::force},
    {"--dry-run", &setup_options::dry_run},
    {"--json", &setup_options::json},
};

struct path_option {
  std::string_view name;
  std::string setup_options::*value;
};

constexpr path_option path_options[] = {
    {"--host", &setup_options::host},
    {"--user-data-dir", &setup_options::user_data},
    {"--root", &setup_options::root},
};

bool add_browser(const std::string& name, setup_options& options, std::string& error) {
  if (name == "all") {
    for (const browser& each : all_browsers()) options.browsers.push_back(&each);
    return true;
  }
  const browser* const found = find_browser(name);
  if (found == nullptr) {
    error = "there is no browser \"" + name + "\"; see cfsetup --help";
    return false;
  }
  options.browsers.push_back(found);
  return true;
}

bool add_id(const std::string& id, setup_options& options, std::string& error) {
  const std::optional<id_form> form = form_of_id(id, error);
  if (!form.has_value()) return false;
  (*form == id_form::chromium ? options.chromium_ids : options.firefox_ids).push_back(id);
  return true;
}

bool set_value(const std::string& name, const std::string& value, setup_options& options,
               std::string& error) {
  if (name == "--browser") return add_browser(value, options, error);
  if (name == "--extension-id") return add_id(value, options, error);
  for (const path_option& option : path_options) {
    if (option.name != name) continue;
    if (!platform::is_absolute_path(value)) {
      error = name + " needs an absolute path, not \"" + value + '"';
      return false;
    }
    options.*option.value = value;
    return true;
  }
  error = "there is no option " + name;
  return false;
}

bool set_switch(const std::string& name, setup_options& options) {
  for (const switch_option& option : switch_options) {
    if (option.name != name) continue;
    options.*option.value = true;
    return true;
  }
  return false;
}

bool set_command(const std::string& name, setup_options& options, std::string& error) {
  for (const named_command& command : commands) {
    if (command.name != name) continue;
    options.command = command.command;
    return true;
  }
  error = "there is no command \"" + name + '"';
  return false;
}

bool fit_together(const setup_options& options, std::string& error) {
  if (options.command == setup_command::install && options.chromium_ids.empty() &&
      options.firefox_ids.empty()) {
    error = "install needs --extension-id";
  } else if (!options.user_data.empty() && (options.system || options.browsers.size() > 1)) {
    error = "--user-data-dir is for one browser of one user";
  }
  return error.empty();
}

}  // namespace

bool parse_options(const std::vector<std::string>& arguments, setup_options& options,
                   std::string& error) {
  if (arguments.empty()) {
    error = "a command is needed: install, remove, list or doctor";
    return false;
  }
  if (!set_command(arguments.front(), options, error)) return false;
  for (std::size_t at = 1; at < arguments.size(); ++at) {
    const std::string& argument = arguments[at];
    if (argument == "--help") {
      options.command = setup_command::help;
      return true;
    }
    if (set_switch(argument, options)) continue;
    if (!argument.starts_with('-') || at + 1 == arguments.size()) {
      error = argument.starts_with('-') ? argument + " is no option, or needs a value behind it"
                                        : "\"" + argument + "\" stands behind no option";
      return false;
    }
    if (!set_value(argument, arguments[++at], options, error)) return false;
  }
  return fit_together(options, error);
}
