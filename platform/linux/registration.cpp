#include "platform/registration.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/files.h"

namespace platform {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && is_absolute_path(value) ? value : std::string();
}

std::string below_root(const std::string& root, const std::string& path) {
  return root.empty() ? path : path_below(root, path);
}

// Empty if the environment has no home folder.
std::string user_path(const std::string& root, std::string_view path) {
  const std::string home = environment("HOME");
  if (home.empty()) return {};
  if (path.substr(0, 2) == "~/") {
    return below_root(root, path_below(home, std::string(path.substr(2))));
  }
  const std::string settings = environment("XDG_CONFIG_HOME");
  return below_root(root, path_below(settings.empty() ? path_below(home, ".config") : settings,
                                     std::string(path)));
}

bool exists(const std::string& path) { return !path.empty() && look_at(path).exists; }

// Whether any of the names makes a path that exists.
template <class Path>
bool any_exists(std::string_view names, Path path_of) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(':'), names.size());
    if (exists(path_of(std::string(names.substr(0, end))))) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

}  // namespace

std::string path_in_system(const std::string& path, const std::string& root) {
  return path.starts_with("~/") ? user_path(root, path) : below_root(root, path);
}

manifest_place place_of(const browser_places& browser, const std::string& name,
                        registration_scope scope, const std::string& root) {
  const std::string folder = scope == registration_scope::user
                                 ? user_path(root, browser.user_folder)
                                 : below_root(root, browser.system_folder);
  if (folder.empty()) return {};
  return {path_below(folder, name + ".json"), {}, scope};
}

manifest_place place_in_folder(const std::string& folder, const std::string& name) {
  return {path_below(folder, name + ".json"), {}, registration_scope::user};
}

manifest_place place_in_flatpak(const browser_places& browser, const std::string& name,
                                const std::string& root) {
  const std::string_view folder = browser.user_folder;
  const std::string inside = folder.starts_with("~/") ? std::string(folder.substr(2))
                                                      : path_below("config", browser.user_folder);
  const std::string outside =
      user_path(root, path_below(path_below("~/.var/app", browser.flatpak), inside));
  return outside.empty() ? manifest_place() : place_in_folder(outside, name);
}

std::string host_of_manifest(const std::string&, const std::string& named) {
  return is_absolute_path(named) ? named : std::string();
}

std::string registered_file(const manifest_place& place) {
  // A dangling link counts too: the browser finds something there, if nothing good.
  struct stat ignored = {};
  const bool found = !place.file.empty() && lstat(place.file.c_str(), &ignored) == 0;
  return found ? place.file : std::string();
}

bool add_registration(const manifest_place&, std::string&) { return true; }
bool remove_registration(const manifest_place&, std::string&) { return true; }

browser_traces traces_of(const browser_places& browser, const std::string& root) {
  browser_traces traces;
  traces.used = any_exists(browser.user_data,
                           [&root](const std::string& name) { return user_path(root, name); });
  traces.installed = any_exists(browser.programs, [&root](const std::string& name) {
    const std::string below = path_below("/usr/bin", name);
    return exists(below_root(root, below)) ? below_root(root, below)
                                           : below_root(root, path_below("/usr/local/bin", name));
  });
  if (*browser.flatpak != '\0') {
    traces.flatpak =
        exists(below_root(root, path_below("/var/lib/flatpak/app", browser.flatpak))) ||
        exists(user_path(root, path_below("~/.local/share/flatpak/app", browser.flatpak)));
  }
  traces.snap =
      *browser.snap != '\0' && exists(below_root(root, path_below("/snap", browser.snap)));
  return traces;
}

bool runs_for_somebody_else() { return geteuid() == 0 && std::getenv("SUDO_USER") != nullptr; }

}  // namespace platform
