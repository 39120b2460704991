// Where the manifests of the chosen browsers are.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/setup_options.h"

// The browsers that the options name, or else those found on this system; none if neither gives
// any.
std::vector<const browser*> chosen_browsers(const setup_options& options);

// Where the browser's manifest goes. If it can't go anywhere, the file is empty and the reason is
// in `error`.
platform::manifest_place chosen_place(const browser& chosen, const setup_options& options,
                                      platform::registration_scope scope, std::string& error);

// The other browsers that look at the same place.
std::vector<const browser*> sharers_of(const browser& chosen, const setup_options& options,
                                       platform::registration_scope scope);

// "Chrome", "Chrome and Brave", "Chrome, Edge and Brave".
std::string enumeration(const std::vector<std::string>& names);
std::string titles_of(const std::vector<const browser*>& browsers);
