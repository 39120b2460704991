#include "platform/registration.h"

#include <windows.h>
// To be included after windows.h.
#include <shlobj.h>

#include "platform/files.h"
#include "platform/windows/native.h"

namespace platform {
namespace {

constexpr char user_root[] = R"(HKEY_CURRENT_USER\)";
constexpr char machine_root[] = R"(HKEY_LOCAL_MACHINE\)";

HKEY root_of(registration_scope scope) {
  return scope == registration_scope::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

// The name of a key below its root.
std::string key_name(const manifest_place& place) {
  return place.key.substr(place.key.find('\\') + 1);
}

bool has_key(HKEY root, const std::string& name) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(root, name.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

std::string reason(const manifest_place& place, LSTATUS status) {
  return "can't change the registry key " + place.key + ": error " + std::to_string(status);
}

}  // namespace

std::string path_in_system(const std::string&, const std::string&) { return {}; }

manifest_place place_of(const browser_places& browser, const std::string& name,
                        registration_scope scope, const std::string& root) {
  const bool for_user = scope == registration_scope::user;
  char folder[max_path_size] = {};
  SHGetFolderPathA(nullptr, for_user ? CSIDL_LOCAL_APPDATA : CSIDL_COMMON_APPDATA, nullptr,
                   SHGFP_TYPE_CURRENT, folder);
  if (folder[0] == '\0' || !root.empty()) return {};
  // The folder is ours alone, so each registry key has a file of its own there.
  const std::string file = path_below(
      folder, R"(Orvanta\NativeMessagingHosts\)" + name + '.' + browser.registry_owner + ".json");
  return {file, (for_user ? user_root : machine_root) + path_below(browser.registry_key, name),
          scope};
}

manifest_place place_in_folder(const std::string&, const std::string&) { return {}; }

manifest_place place_in_flatpak(const browser_places&, const std::string&, const std::string&) {
  return {};
}

std::string host_of_manifest(const std::string& file, const std::string& named) {
  if (named.empty() || is_absolute_path(named)) return named;
  return path_below(folder_of(file), named);
}

std::string registered_file(const manifest_place& place) {
  char path[max_path_size * 2] = {};
  DWORD size = sizeof path;
  const bool found =
      !place.key.empty() && RegGetValueA(root_of(place.scope), key_name(place).c_str(), nullptr,
                                         RRF_RT_REG_SZ, nullptr, path, &size) == ERROR_SUCCESS;
  return found ? path : std::string();
}

bool add_registration(const manifest_place& place, std::string& error) {
  const LSTATUS status =
      RegSetKeyValueA(root_of(place.scope), key_name(place).c_str(), nullptr, REG_SZ,
                      place.file.c_str(), static_cast<DWORD>(place.file.size() + 1));
  if (status != ERROR_SUCCESS) error = reason(place, status);
  return status == ERROR_SUCCESS;
}

bool remove_registration(const manifest_place& place, std::string& error) {
  const LSTATUS status = RegDeleteKeyA(root_of(place.scope), key_name(place).c_str());
  if (status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND) return true;
  error = reason(place, status);
  return false;
}

browser_traces traces_of(const browser_places& browser, const std::string&) {
  // The browser's own key lies above the key of its hosts.
  const std::string key = folder_of(browser.registry_key);
  browser_traces traces;
  traces.used = has_key(HKEY_CURRENT_USER, key);
  traces.installed = has_key(HKEY_LOCAL_MACHINE, key);
  return traces;
}

bool runs_for_somebody_else() { return false; }

}  // namespace platform
