// What an administrator has decided for a browser.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registration.h"

namespace platform {

// The policy files in the browser's folders, ordered by folder and then by name; none on systems
// that keep policies in the registry alone. `root` as in place_of.
std::vector<std::string> policy_files(const browser_places& browser, const std::string& root);

// A policy in the registry.
struct registry_policy {
  std::string key;                  // for people
  std::vector<std::string> values;  // a list's, or the only one; numbers in decimal
};

// Nothing if the registry doesn't have it, or if this system has no registry.
std::optional<registry_policy> policy_in_registry(const browser_places& browser,
                                                  registration_scope scope, const char* name);

}  // namespace platform
