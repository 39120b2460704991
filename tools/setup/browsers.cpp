#include "tools/setup/browsers.h"

#include "tools/setup/browser_table.h"

std::span<const browser> all_browsers() { return browser_table; }

const browser* find_browser(std::string_view name) {
  for (const browser& candidate : browser_table) {
    if (candidate.name == name) return &candidate;
  }
  return nullptr;
}

std::string browser_names() {
  std::string names;
  for (const browser& each : browser_table) names.append(names.empty() ? "" : ", ") += each.name;
  return names;
}

const browser& unlisted_browser(id_form form) {
  static constexpr browser chromium = {"", "This browser", id_form::chromium, {}};
  static constexpr browser firefox = {"", "This browser", id_form::firefox, {}};
  return form == id_form::chromium ? chromium : firefox;
}
