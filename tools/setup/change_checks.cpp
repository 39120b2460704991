#include "tools/setup/change_checks.h"

#include "platform/file_rights.h"
#include "tools/setup/places.h"

using platform::manifest_place;
using platform::registration_scope;

registration_scope scope_of(const setup_options& options) {
  return options.system ? registration_scope::system : registration_scope::user;
}

std::string shown(const manifest_place& place) {
  return place.key.empty() ? place.file : place.file + " and the registry key " + place.key;
}

report_entry failure(const browser& of, const char* id, std::string text, std::string advice) {
  return {of.title, severity::fault, id, std::move(text), std::move(advice)};
}

report_entry unable(const browser& of, const char* id, std::string text,
                    const setup_options& options) {
  return failure(of, id, std::move(text), options.system ? "Run this as an administrator." : "");
}

report_entry other_host(const browser& of, const present_manifest& present) {
  return failure(of, "other-host",
                 present.file + " names another host: " +
                     (present.host.empty() ? "none that can be read" : present.host),
                 "If that is to go, run this again with --force.");
}

bool is_led_elsewhere(const browser& of, const manifest_place& place, const setup_options& options,
                      report& out) {
  if (options.system || !platform::is_superuser()) return false;
  // A link is enough for that, even one that appears at the last moment.
  const std::string foreign = platform::foreign_part(place.file);
  if (foreign.empty()) return false;
  out.add(failure(of, "foreign-folder",
                  foreign +
                      " is in the hands of other users, who could lead what root writes below "
                      "it to another place",
                  "Run this as the user whose folder it is, or with --system for all users."));
  return true;
}

std::string for_sharers(const browser& of, const setup_options& options, const char* what) {
  const auto sharers = sharers_of(of, options, scope_of(options));
  return sharers.empty() ? std::string() : ", " + std::string(what) + titles_of(sharers);
}

void add_for_nobody(report& out, severity weight) {
  out.add({"", weight, "no-browser", "no browser was found on this system",
           "Name yours with --browser."});
}
