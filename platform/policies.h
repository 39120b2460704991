// What an administrator has decided for a browser.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registration.h"

namespace platform {

// The files in the browser's folders for policies, in the order of the folders and of their names;
// none on systems that have policies in the registry alone. `root` as in place_of.
std::vector<std::string> policy_files(const browser_places& browser, const std::string& root);

// A policy in the registry.
struct registry_policy {
  std::string key;                  // for people
  std::vector<std::string> values;  // a list's, or the only one; numbers in decimal
};

// Nothing if the registry, or this system, hasn't it.
std::optional<registry_policy> policy_in_registry(const browser_places& browser,
                                                  registration_scope scope, const char* name);

}  // namespace platform
