#include "tools/setup/present_manifest.h"

#include "platform/files.h"
#include "tools/setup/flatpak.h"
#include "tools/tap_settings.h"

namespace {

void read_content(present_manifest& found, id_form form) {
  std::string error;
  if (!platform::read_file(found.file, max_manifest_size, found.text, error)) {
    found.text.clear();
    found.faults = {{"manifest-unreadable", error}};
    return;
  }
  found.content = parse_manifest(found.text, form, error);
  if (!found.content.has_value()) {
    found.faults = {{"manifest-not-json",
                     found.file + " is no JSON object that the browser could read: " + error}};
    return;
  }
  found.faults = faults_of(*found.content, form);
  for (manifest_fault& each : found.faults) each.text.insert(0, found.file + ' ');
}

}  // namespace

present_manifest look_at_present(const platform::manifest_place& place, id_form form) {
  present_manifest found;
  found.file = platform::registered_file(place);
  found.registered = !found.file.empty();
  if (found.registered) read_content(found, form);
  if (!found.content.has_value()) return found;
  found.ids = allowed_ids(*found.content, form);
  found.path = platform::host_of_manifest(found.file, found.content->path.value_or(""));
  if (!found.path.empty()) found.host = host_behind(found.path);
  return found;
}

bool starts_host(const present_manifest& present, const std::string& host) {
  return is_same_host(recorded_host(present.host), host);
}

bool is_same_host(const std::string& one, const std::string& other) {
  return one == other ||
         (!one.empty() && platform::started_file(one) == platform::started_file(other));
}
