#include "platform/policies.h"

#include <windows.h>

#include "platform/files.h"

namespace platform {
namespace {

// No list of hosts is longer.
constexpr DWORD max_value_size = 1 << 16;

std::string text_of(DWORD type, const char* data, DWORD size) {
  if (type == REG_DWORD) return std::to_string(*reinterpret_cast<const DWORD*>(data));
  std::string text(data, size);
  // In a value of several strings each one ends with NUL, and so does the whole.
  for (char& c : text) c = c == '\0' ? '\n' : c;
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

// The values of a list are stored under a key of its own.
std::vector<std::string> values_of(HKEY key) {
  std::vector<std::string> values;
  alignas(DWORD) char data[max_value_size];
  char name[256];
  for (DWORD i = 0;; ++i) {
    DWORD name_size = sizeof name, size = sizeof data, type = 0;
    const LSTATUS status = RegEnumValueA(key, i, name, &name_size, nullptr, &type,
                                         reinterpret_cast<BYTE*>(data), &size);
    if (status == ERROR_NO_MORE_ITEMS) return values;
    if (status == ERROR_SUCCESS) values.push_back(text_of(type, data, size));
  }
}

}  // namespace

std::vector<std::string> policy_files(const browser_places&, const std::string&) { return {}; }

std::optional<registry_policy> policy_in_registry(const browser_places& browser,
                                                  registration_scope scope, const char* name) {
  if (browser.policy_key == nullptr || *browser.policy_key == '\0') return std::nullopt;
  const bool for_user = scope == registration_scope::user;
  const HKEY root = for_user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  const std::string list = path_below(browser.policy_key, name);
  const std::string shown = (for_user ? R"(HKEY_CURRENT_USER\)" : R"(HKEY_LOCAL_MACHINE\)") + list;
  HKEY key = nullptr;
  if (RegOpenKeyExA(root, list.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS) {
    registry_policy found{shown, values_of(key)};
    RegCloseKey(key);
    return found;
  }
  alignas(DWORD) char data[max_value_size];
  DWORD size = sizeof data, type = 0;
  if (RegGetValueA(root, browser.policy_key, name, RRF_RT_ANY, &type, data, &size) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  return registry_policy{shown, {text_of(type, data, size)}};
}

}  // namespace platform
