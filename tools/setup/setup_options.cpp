#include "tools/setup/setup_options.h"

#include <string_view>

#include "platform/files.h"
#include "tools/command_line.h"
#include "tools/setup/extension_id.h"

namespace {

constexpr char description[] =
    "Registers the native-messaging host with browsers, and finds out why a browser doesn't start "
    "it.";

constexpr char footer[] =
    R"(cfsetup COMMAND --help shows the options of a command.

Exit value: 0 if all is well, 1 if something failed or the doctor found a fault (warnings don't
count), 2 if the arguments are wrong.

Example: cfsetup install --browser chromium --extension-id abcdefghijklmnopabcdefghijklmnop)";

void add_browser(const std::string& name, setup_options& options) {
  if (name == "all") {
    for (const browser& each : all_browsers()) options.browsers.push_back(&each);
    return;
  }
  const browser* const found = find_browser(name);
  if (found == nullptr) {
    refuse_value("there is no browser \"" + name + "\"; known are " + browser_names() + " and all");
  }
  options.browsers.push_back(found);
}

void add_id(const std::string& id, setup_options& options) {
  std::string error;
  const std::optional<id_form> form = form_of_id(id, error);
  if (!form.has_value()) refuse_value(error);
  (*form == id_form::chromium ? options.chromium_ids : options.firefox_ids).push_back(id);
}

// An option that may be repeated; each of its values goes through `take`.
CLI::Option* add_each(CLI::App& to, const char* name, const char* value, const char* text,
                      std::function<void(const std::string&)> take) {
  return to
      .add_option_function<std::vector<std::string>>(
          name,
          [take = std::move(take)](const std::vector<std::string>& values) {
            for (const std::string& each : values) take(each);
          },
          text)
      ->type_name(value)
      ->allow_extra_args(false);
}

CLI::Option* add_path(CLI::App& to, const char* name, const char* value, std::string& path,
                      const char* text) {
  return to.add_option(name, path, text)->type_name(value)->check([](const std::string& given) {
    return platform::is_absolute_path(given) ? std::string()
                                             : "an absolute path is needed, not \"" + given + '"';
  });
}

void add_ids(CLI::App& to, setup_options& options, const char* text) {
  add_each(to, "--extension-id", "ID", text,
           [&options](const std::string& id) { add_id(id, options); });
}

// The options of all commands that say where manifests are.
void add_places(CLI::App& to, setup_options& options) {
  add_each(to, "--browser", "NAME",
           "One of those below, or all; may be repeated (default: those "
           "that are\ninstalled or that this user has started before)",
           [&options](const std::string& name) { add_browser(name, options); });
  CLI::Option* const user_data = add_path(
      to, "--user-data-dir", "DIR", options.user_data,
      "The browser is started with this folder for its data (not on\nWindows, not for Firefox)");
  CLI::Option* const folder = add_path(to, "--manifest-dir", "DIR", options.manifest_dir,
                                       "Where a browser that isn't listed looks for manifests");
  to.add_option_function<std::string>(
        "--form",
        [&options](const std::string& form) {
          const bool is_chromium = form == "chromium";
          if (!is_chromium && form != "firefox") refuse_value("--form is chromium or firefox");
          options.browsers = {
              &unlisted_browser(is_chromium ? id_form::chromium : id_form::firefox)};
        },
        "The form of those manifests: chromium or firefox")
      ->type_name("FORM")
      ->needs(folder);
  folder->needs("--form")->excludes("--browser")->excludes(user_data);
  to.add_flag("--flatpak", options.flatpak, "The browser is a Flatpak")
      ->excludes(user_data)
      ->excludes(folder);
  add_path(to, "--root", "DIR", options.root,
           "Examine and change the system below DIR (not on Windows)");
  to.add_flag("--json", options.json, "Report in JSON");
  to.footer("Browsers: " + browser_names() + ".");
}

void add_scope(CLI::App& to, setup_options& options) {
  to.add_flag("--system", options.system, "For all users instead of this one")
      ->excludes("--user-data-dir")
      ->excludes("--manifest-dir")
      ->excludes("--flatpak");
}

CLI::App& add_command(CLI::App& app, const char* name, setup_command command, const char* text,
                      setup_options& options) {
  CLI::App& added = *app.add_subcommand(name, text);
  added.parse_complete_callback([&options, command] { options.command = command; });
  add_places(added, options);
  return added;
}

void add_changes(CLI::App& to, setup_options& options) {
  add_scope(to, options);
  add_path(to, "--host", "PATH", options.host,
           "The host (default: cfhost beside cfsetup, or ../libexec/cfhost/cfhost)");
  to.add_flag("--force", options.force,
              "Also replace or remove manifests that name another host or are shared");
  to.add_flag("--dry-run", options.dry_run, "Only say what would be written or removed");
}

// Captures belong to the user who makes them.
void add_recording(CLI::App& to, setup_options& options) {
  CLI::Option* const record =
      add_path(to, "--record", "DIR", options.record,
               "Record what browser and host say to each other in DIR, without the values of\n"
               "inputs and settings; install without this option to end it");
  record->excludes("--system");
  to.add_flag("--with-values", options.with_values, "Record those values too, passwords included")
      ->needs(record);
}

void add_install(CLI::App& app, setup_options& options) {
  CLI::App& install =
      add_command(app, "install", setup_command::install,
                  "Let the given extensions, and no others, start the host", options);
  add_ids(
      install, options,
      "32 letters from a to p; for Firefox name@domain or a {GUID}. Each\nbrowser takes the ids "
      "of its own form; may be repeated");
  add_each(install, "--add-extension-id", "ID",
           "The same, in addition to the extensions already allowed",
           [&options](const std::string& id) {
             add_id(id, options);
             options.keep_ids = true;
           });
  install.add_flag("--keep-ids", options.keep_ids, "Keep the extensions that are already allowed");
  add_changes(install, options);
  add_recording(install, options);
}

void add_doctor(CLI::App& app, setup_options& options) {
  CLI::App& doctor = add_command(
      app, "doctor", setup_command::doctor,
      "Examine every registration, start the host as the browser would, and say\nwhat is wrong and "
      "what to do about it",
      options);
  add_ids(doctor, options, "Check that this extension may start the host; may be repeated");
  CLI::Option* const fix =
      doctor.add_flag("--fix", options.fix, "Do what the doctor advises, as far as that is safe");
  doctor.add_flag("--dry-run", options.dry_run, "Only say what --fix would do")->needs(fix);
}

// What can't be said of one option alone.
void check_together(const setup_options& options) {
  if (options.command == setup_command::install && !options.keep_ids &&
      options.chromium_ids.empty() && options.firefox_ids.empty()) {
    refuse_value("install needs --extension-id, --add-extension-id or --keep-ids");
  }
  if (options.user_data.empty()) return;
  if (options.browsers.size() > 1) refuse_value("--user-data-dir is for one browser");
  if (!options.browsers.empty() && options.browsers.front()->ids == id_form::firefox) {
    refuse_value("--user-data-dir: Firefox and related browsers don't look for manifests there");
  }
}

}  // namespace

std::optional<int> parse_cfsetup_options(int argc, char** argv, setup_options& options) {
  CLI::App app(description, "cfsetup");
  add_common_options(app);
  app.require_subcommand(1);
  app.footer(footer);
  add_install(app, options);
  CLI::App& remove =
      add_command(app, "remove", setup_command::remove, "Undo the registration", options);
  add_changes(remove, options);
  add_command(app, "list", setup_command::list, "Show where the host is registered", options);
  add_doctor(app, options);
  app.final_callback([&options] { check_together(options); });
  return parse_command_line(app, {argv + (argc > 0), argv + argc});
}
