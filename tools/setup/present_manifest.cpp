#include "tools/setup/present_manifest.h"

#include "platform/files.h"
#include "tools/setup/flatpak.h"
#include "tools/tap_settings.h"

present_manifest look_at_present(const platform::manifest_place& place, id_form form) {
  present_manifest found;
  found.file = platform::registered_file(place);
  found.registered = !found.file.empty();
  std::string ignored;
  if (!found.registered ||
      !platform::read_file(found.file, max_manifest_size, found.text, ignored)) {
    found.text.clear();
    return found;
  }
  const auto parsed = parse_manifest(found.text, form, ignored);
  if (!parsed.has_value()) return found;
  found.ids = allowed_ids(*parsed, form);
  const std::string path = platform::host_of_manifest(found.file, parsed->path.value_or(""));
  if (!path.empty()) found.host = host_behind(path);
  return found;
}

bool starts_host(const present_manifest& present, const std::string& host) {
  return is_same_host(recorded_host(present.host), host);
}

bool is_same_host(const std::string& one, const std::string& other) {
  return one == other ||
         (!one.empty() && platform::started_file(one) == platform::started_file(other));
}
