#include "tools/setup/registration.h"

#include "platform/files.h"
#include "tools/setup/manifest.h"

namespace {

using platform::manifest_place;
using platform::registration_scope;

registration_scope scope_of(const setup_options& options) {
  return options.system ? registration_scope::system : registration_scope::user;
}

report_entry failure(const browser& of, const char* id, std::string text, std::string advice = {}) {
  return {of.title, severity::fault, id, std::move(text), std::move(advice)};
}

// Where a manifest is, and what it needs to be taken for it.
std::string shown(const manifest_place& place) {
  return place.key.empty() ? place.file : place.file + " and the registry key " + place.key;
}

// What stands at the place already.
struct present_manifest {
  bool registered = false;
  bool readable = false;
  std::string text;
  std::string host;  // empty too if it is no manifest
};

present_manifest look_at_present(const manifest_place& place, id_form form) {
  present_manifest found;
  const std::string file = platform::registered_file(place);
  found.registered = !file.empty();
  std::string ignored;
  found.readable =
      found.registered && platform::read_file(file, max_manifest_size, found.text, ignored);
  if (found.readable) {
    const auto parsed = parse_manifest(found.text, form, ignored);
    if (parsed.has_value()) found.host = parsed->path;
  }
  return found;
}

report_entry install_one(const browser& to, const setup_options& options, const std::string& host) {
  std::string error;
  const manifest_place place = chosen_place(to, options, scope_of(options), error);
  if (place.file.empty()) return failure(to, "no-place", error);
  const std::string text = manifest_text(host, to.ids, options.ids(to.ids));
  const present_manifest present = look_at_present(place, to.ids);
  if (present.readable && present.text == text && platform::registered_file(place) == place.file) {
    return {to.title, severity::good, "unchanged", "unchanged: " + shown(place), {}};
  }
  if (present.registered && present.host != host && !options.force) {
    return failure(to, "other-host",
                   platform::registered_file(place) + " names another host: " +
                       (present.host.empty() ? "none that can be read" : present.host),
                   "If that is to go, run this again with --force.");
  }
  if (options.dry_run) {
    return {to.title, severity::note, "would-write", "would write " + shown(place), {}};
  }
  const auto readers =
      options.system ? platform::folder_readers::everybody : platform::folder_readers::owner;
  if (!platform::write_file(place.file, text, readers, error) ||
      !platform::add_registration(place, error)) {
    return failure(to, "write-failed", error,
                   options.system ? "Run this as an administrator." : std::string());
  }
  return {to.title, severity::good, "written", "wrote " + shown(place), {}};
}

report_entry remove_one(const browser& from, const setup_options& options) {
  std::string error;
  const manifest_place place = chosen_place(from, options, scope_of(options), error);
  if (place.file.empty()) return failure(from, "no-place", error);
  if (platform::registered_file(place).empty() && !platform::look_at(place.file).exists) {
    return {from.title, severity::good, "absent", "nothing to remove at " + shown(place), {}};
  }
  if (options.dry_run) {
    return {from.title, severity::note, "would-remove", "would remove " + shown(place), {}};
  }
  // The registry first: a key that names no file is the worse half.
  if (!platform::remove_registration(place, error) || !platform::remove_file(place.file, error)) {
    return failure(from, "remove-failed", error,
                   options.system ? "Run this as an administrator." : std::string());
  }
  return {from.title, severity::good, "removed", "removed " + shown(place), {}};
}

report_entry list_one(const browser& of, const setup_options& options, registration_scope scope) {
  std::string error;
  const manifest_place place = chosen_place(of, options, scope, error);
  if (place.file.empty()) return {of.title, severity::note, "no-place", error, {}};
  const char* const whose = scope == registration_scope::user ? "for this user" : "for all users";
  const present_manifest present = look_at_present(place, of.ids);
  if (!present.registered) {
    return {of.title,
            severity::note,
            "not-registered",
            std::string("not registered ") + whose + " (" + shown(place) + ")",
            {}};
  }
  return {of.title,
          severity::good,
          "registered",
          std::string("registered ") + whose + ": " + platform::registered_file(place) + " names " +
              (present.host.empty() ? "no host that can be read" : present.host),
          {}};
}

void add_for_nobody(report& out) {
  out.add({"", severity::fault, "no-browser", "no browser was found on this system",
           "Name yours with --browser."});
}

}  // namespace

std::vector<const browser*> chosen_browsers(const setup_options& options) {
  if (!options.browsers.empty()) return options.browsers;
  if (!options.user_data.empty()) return {find_browser("chromium")};
  std::vector<const browser*> found;
  for (const browser& each : all_browsers()) {
    const auto traces = platform::find_browser(each.places, options.root);
    if (traces.used || traces.installed || traces.flatpak || traces.snap) found.push_back(&each);
  }
  return found;
}

manifest_place chosen_place(const browser& chosen, const setup_options& options,
                            registration_scope scope, std::string& error) {
  manifest_place place =
      options.user_data.empty()
          ? platform::place_of(chosen.places, chosen.name, host_name, scope, options.root)
          : platform::place_in_user_data(options.user_data, host_name);
  if (place.file.empty()) {
    error = options.user_data.empty() && options.root.empty()
                ? "the environment doesn't tell where this user's settings are"
                : "this system has no such place: leave out --user-data-dir and --root";
  }
  return place;
}

bool install(const setup_options& options, const std::string& host, report& out) {
  if (!is_utf8(host)) {
    out.add({"", severity::fault, "host-not-utf8",
             "a manifest is UTF-8, and the path " + host + " isn't",
             "Rename its folder, or reach the host by another path and name that with --host."});
    return false;
  }
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) add_for_nobody(out);
  for (const browser* const each : browsers) {
    if (!options.ids(each->ids).empty()) {
      out.add(install_one(*each, options, host));
    } else if (options.browsers.size() == 1) {
      out.add(failure(*each, "no-id", "none of the extension ids is one of this browser's form"));
    } else {
      out.add({each->title,
               severity::note,
               "skipped",
               "left out: none of the extension ids is one of this browser's form",
               {}});
    }
  }
  if (!options.system && platform::runs_for_somebody_else()) {
    out.add({"", severity::warning, "other-user",
             "this registered the host for the administrator, not for the user who asked for it",
             "Run cfsetup without sudo, or with --system for all users."});
  }
  return !out.has_faults();
}

bool remove(const setup_options& options, report& out) {
  const auto browsers = chosen_browsers(options);
  for (const browser* const each : browsers) out.add(remove_one(*each, options));
  return !out.has_faults();
}

bool list(const setup_options& options, report& out) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) add_for_nobody(out);
  for (const browser* const each : browsers) {
    out.add(list_one(*each, options, registration_scope::user));
    if (options.user_data.empty()) out.add(list_one(*each, options, registration_scope::system));
  }
  return !out.has_faults();
}
