#include "tools/setup/places.h"

#include <set>

#include "tools/setup/manifest.h"

namespace {

using platform::manifest_place;
using platform::registration_scope;

bool is_here(const browser& each, const setup_options& options) {
  const auto traces = platform::traces_of(each.places, options.root);
  if (options.flatpak) return traces.flatpak;
  return traces.used || traces.installed || traces.flatpak || traces.snap;
}

manifest_place place_for(const browser& chosen, const setup_options& options,
                         registration_scope scope) {
  if (!options.manifest_dir.empty()) {
    return platform::place_in_folder(options.manifest_dir, host_name);
  }
  if (!options.user_data.empty()) {
    return platform::place_in_folder(options.user_data + "/NativeMessagingHosts", host_name);
  }
  if (options.flatpak) {
    return platform::place_in_flatpak(chosen.places, host_name, options.root);
  }
  return platform::place_of(chosen.places, host_name, scope, options.root);
}

}  // namespace

std::vector<const browser*> chosen_browsers(const setup_options& options) {
  if (!options.browsers.empty()) return options.browsers;
  if (!options.user_data.empty()) return {find_browser("chromium")};
  std::vector<const browser*> found;
  // Browsers that share a registry key can't be told apart by their traces, which are keys too.
  std::set<std::string> keys;
  for (const browser& each : all_browsers()) {
    if (!is_here(each, options)) continue;
    const std::string key = place_for(each, options, registration_scope::user).key;
    if (key.empty() || keys.insert(key).second) found.push_back(&each);
  }
  return found;
}

manifest_place chosen_place(const browser& chosen, const setup_options& options,
                            registration_scope scope, std::string& error) {
  if (options.flatpak && *chosen.places.flatpak == '\0') {
    error = "there is no Flatpak of it";
    return {};
  }
  manifest_place place = place_for(chosen, options, scope);
  if (place.file.empty()) {
    error = !options.has_own_folder() && options.root.empty()
                ? "the environment doesn't tell where this user's settings are"
                : "this system has no such place: leave out --user-data-dir, --manifest-dir, "
                  "--flatpak and --root";
  }
  return place;
}

std::vector<const browser*> sharers_of(const browser& chosen, const setup_options& options,
                                       registration_scope scope) {
  std::vector<const browser*> sharers;
  if (options.has_own_folder()) return sharers;
  const manifest_place place = place_for(chosen, options, scope);
  for (const browser& each : all_browsers()) {
    const manifest_place other = place_for(each, options, scope);
    if (&each != &chosen && other.file == place.file && other.key == place.key) {
      sharers.push_back(&each);
    }
  }
  return sharers;
}

std::string enumeration(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

std::string titles_of(const std::vector<const browser*>& browsers) {
  std::vector<std::string> titles;
  titles.reserve(browsers.size());
  for (const browser* const each : browsers) titles.emplace_back(each->title);
  return enumeration(titles);
}
