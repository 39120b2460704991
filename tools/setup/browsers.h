// The browsers that the host can be registered with.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/registration.h"

// How a browser names extensions, and the member of a manifest that lists the ones it allows.
enum class id_form {
  chromium,  // "allowed_origins"
  firefox,   // "allowed_extensions"
};

struct browser {
  const char* name;   // on the command line and in reports
  const char* title;  // for people
  id_form ids;
  platform::browser_places places;
};

// As tools/setup/browsers.ini lists them.
std::span<const browser> all_browsers();

// Null if there is none of that name.
const browser* find_browser(std::string_view name);

// All names, for people.
std::string browser_names();

// A browser that isn't listed: only the form of its manifests is known.
const browser& unlisted_browser(id_form form);
