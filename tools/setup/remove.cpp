#include <algorithm>
#include <set>

#include "platform/files.h"
#include "tools/setup/change_checks.h"
#include "tools/setup/commands.h"
#include "tools/setup/flatpak.h"
#include "tools/setup/places.h"
#include "tools/setup/registration.h"

namespace {

using platform::manifest_place;

// Browsers on this system that weren't chosen but would lose their registration too.
std::vector<const browser*> losers(const browser& from, const setup_options& options) {
  std::vector<const browser*> others;
  for (const browser* const each : sharers_of(from, options, scope_of(options))) {
    const auto traces = platform::traces_of(each->places, options.root);
    const auto chosen = chosen_browsers(options);
    const bool goes_too = std::find(chosen.begin(), chosen.end(), each) != chosen.end();
    if (!goes_too && (traces.used || traces.installed)) others.push_back(each);
  }
  return others;
}

report_entry shared(const browser& from, const manifest_place& place,
                    const std::vector<const browser*>& others, const setup_options& options) {
  std::string command = command_for("remove", from, options, scope_of(options));
  for (const browser* const each : others) command.append(" --browser ").append(each->name);
  return failure(from, "shared-place",
                 "left " + shown(place) + ", which is also that of " + titles_of(others),
                 "If they are to lose it too, run: " + command);
}

report_entry remove_at(const manifest_place& place, const browser& from,
                       const setup_options& options, const std::string& host) {
  const present_manifest present = look_at_present(place, from.ids);
  if (!present.registered && !platform::look_at(place.file).exists) {
    return {from.title, severity::good, "absent", "nothing to remove at " + shown(place), {}};
  }
  if (present.registered && !starts_host(present, host) && !options.force) {
    return other_host(from, present);
  }
  const auto others = losers(from, options);
  if (!others.empty() && !options.force) return shared(from, place, others, options);
  if (options.dry_run) {
    return {from.title, severity::note, "would-remove", "would remove " + shown(place), {}};
  }
  std::string error;
  // The registry first: a key that names no file is worse than a file that no key names.
  if (!platform::remove_registration(place, error) || !platform::remove_file(place.file, error) ||
      (options.flatpak && !platform::remove_file(flatpak_script_path(from, options), error))) {
    return unable(from, "remove-failed", error, options);
  }
  return {from.title,
          severity::good,
          "removed",
          "removed " + shown(place) + for_sharers(from, options, "which was also that of "),
          {}};
}

void remove_one(const browser& from, const setup_options& options, const std::string& host,
                report& out) {
  std::string error;
  const manifest_place place = chosen_place(from, options, scope_of(options), error);
  if (place.file.empty()) {
    out.add(failure(from, "no-place", error));
  } else if (!is_led_elsewhere(from, place, options, out)) {
    out.add(remove_at(place, from, options, host));
  }
}

}  // namespace

void remove(const setup_options& options, const std::string& host, report& out) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) add_for_nobody(out, severity::note);
  std::set<std::string> places;
  for (const browser* const each : browsers) {
    std::string error;
    const manifest_place place = chosen_place(*each, options, scope_of(options), error);
    // Several browsers may share one place.
    const bool is_new = places.insert(place.file + '\n' + place.key).second;
    if (is_new || place.file.empty()) remove_one(*each, options, host, out);
  }
}
