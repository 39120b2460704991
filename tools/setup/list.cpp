#include "tools/setup/change_checks.h"
#include "tools/setup/places.h"
#include "tools/setup/registration.h"

namespace {

using platform::manifest_place;
using platform::registration_scope;

report_entry list_one(const browser& of, const setup_options& options, registration_scope scope) {
  std::string error;
  const manifest_place place = chosen_place(of, options, scope, error);
  if (place.file.empty()) return {of.title, severity::note, "no-place", error, {}};
  const std::string whose = scope == registration_scope::user ? "for this user" : "for all users";
  const present_manifest present = look_at_present(place, of.ids);
  if (!present.registered) {
    return {of.title,
            severity::note,
            "not-registered",
            "not registered " + whose + " (" + shown(place) + ")",
            {}};
  }
  const std::string host = present.host.empty() ? "no host that can be read" : present.host;
  const std::string ids = present.ids.empty() ? "no extension" : enumeration(present.ids);
  return {of.title,
          severity::good,
          "registered",
          "registered " + whose + ": " + present.file + " names " + host + " and lets in " + ids,
          {}};
}

}  // namespace

void list(const setup_options& options, report& out) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) add_for_nobody(out, severity::fault);
  for (const browser* const each : browsers) {
    out.add(list_one(*each, options, registration_scope::user));
    if (!options.has_own_folder()) {
      out.add(list_one(*each, options, registration_scope::system));
    }
  }
}
