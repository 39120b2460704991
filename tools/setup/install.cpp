#include <algorithm>

#include "platform/file_rights.h"
#include "platform/files.h"
#include "tools/setup/change_checks.h"
#include "tools/setup/flatpak.h"
#include "tools/setup/places.h"
#include "tools/setup/registration.h"

namespace {

using platform::manifest_place;

std::vector<std::string> ids_for(const browser& to, const setup_options& options,
                                 const present_manifest& present) {
  std::vector<std::string> ids;
  if (options.keep_ids) ids = present.ids;
  for (const std::string& id : options.ids(to.ids)) {
    if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
  }
  return ids;
}

bool write(const browser& to, const setup_options& options, const manifest_place& place,
           const std::string& text, const std::string& program, std::string& error) {
  const auto readers =
      options.system ? platform::folder_readers::everybody : platform::folder_readers::owner;
  if (options.flatpak) {
    const std::string script = flatpak_script_path(to, options);
    if (!platform::write_file(script, flatpak_script(program), readers, error) ||
        !platform::make_executable(script, error)) {
      return false;
    }
  }
  return platform::write_file(place.file, text, readers, error) &&
         platform::add_registration(place, error);
}

void install_at(const manifest_place& place, const browser& to, const setup_options& options,
                const std::string& program, const std::string& host, report& out) {
  const present_manifest present = look_at_present(place, to.ids);
  const auto ids = ids_for(to, options, present);
  if (ids.empty()) {
    out.add(failure(to, "no-id", "there is no extension id of this browser's form",
                    "Name your extension with --extension-id."));
    return;
  }
  const std::string started = options.flatpak ? flatpak_script_path(to, options) : program;
  const std::string text = manifest_text(started, to.ids, ids);
  const bool is_ours = is_same_host(present.host, program) || starts_host(present, host);
  std::string error;
  if (present.text == text && present.file == place.file && is_same_host(present.host, program)) {
    out.add({to.title, severity::good, "unchanged", "unchanged: " + shown(place), {}});
  } else if (present.registered && !is_ours && !options.force) {
    out.add(other_host(to, present));
  } else if (options.dry_run) {
    out.add({to.title, severity::note, "would-write", "would write " + shown(place), {}});
  } else if (!write(to, options, place, text, program, error)) {
    out.add(unable(to, "write-failed", error, options));
  } else {
    out.add({to.title,
             severity::good,
             "written",
             "wrote " + shown(place) + for_sharers(to, options, "which is also that of "),
             {}});
  }
  if (options.flatpak && !may_leave_sandbox(to, options)) {
    out.add({to.title, severity::warning, "permission-missing",
             "its sandbox keeps it from starting the host until it may start any program",
             "Run: " + permission_command(to)});
  }
}

void install_one(const browser& to, const setup_options& options, const std::string& program,
                 const std::string& host, bool is_one_of_many, report& out) {
  std::string error;
  const manifest_place place = chosen_place(to, options, scope_of(options), error);
  // Not all of many browsers need be the extension's.
  if (is_one_of_many && ids_for(to, options, look_at_present(place, to.ids)).empty()) {
    out.add({to.title,
             severity::note,
             "skipped",
             "left out: none of the extension ids is one of this browser's form",
             {}});
  } else if (place.file.empty()) {
    out.add(failure(to, "no-place", error));
  } else if (!is_led_elsewhere(to, place, options, out)) {
    install_at(place, to, options, program, host, out);
  }
}

}  // namespace

void install(const setup_options& options, const std::string& program, const std::string& host,
             report& out) {
  if (!is_utf8(program)) {
    out.add({"", severity::fault, "host-not-utf8",
             "a manifest is UTF-8, and the path " + program + " isn't",
             "Rename its folder, or reach the host by another path and name that with --host."});
    return;
  }
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) add_for_nobody(out, severity::fault);
  for (const browser* const each : browsers) {
    install_one(*each, options, program, host, browsers.size() > 1, out);
  }
  if (!options.system && platform::runs_for_somebody_else()) {
    out.add({"", severity::warning, "other-user",
             "this registered the host for the administrator, not for the user who asked for it",
             "Run cfsetup without sudo, or with --system for all users."});
  }
}
