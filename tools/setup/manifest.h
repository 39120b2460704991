// The manifest by which a browser knows a native-messaging host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/setup/browsers.h"

// The name of the host, and of its manifests.
inline constexpr char host_name[] = "com.orvanta.coffer";

// Longer than any manifest.
inline constexpr std::size_t max_manifest_size = std::size_t{16} << 20;

// What a manifest says; nothing for members that are missing or of the wrong kind. If several have
// the same name, the last one counts.
struct manifest {
  std::optional<std::string> name;
  std::optional<std::string> description;
  std::optional<std::string> type;
  std::optional<std::string> path;                  // of the host
  std::optional<std::vector<std::string>> allowed;  // as listed: origins, or for Firefox ids
  std::string unknown;  // an unknown member that makes the browser refuse the manifest
};

// Nothing, with what is wrong and where in `error`, if a browser with manifests of this form
// wouldn't read the text.
std::optional<manifest> parse_manifest(const std::string& text, id_form form, std::string& error);

// The ids of the extensions that a manifest allows.
std::vector<std::string> allowed_ids(const manifest& of, id_form form);

struct manifest_fault {
  const char* id;    // as in the report
  std::string text;  // follows the name of the file
};

// Why the browser doesn't accept the manifest, apart from the host's path.
std::vector<manifest_fault> faults_of(const manifest& judged, id_form form);

// Whether the bytes are well-formed UTF-8, as all text in a manifest must be.
bool is_utf8(const std::string& text);

// The manifest that allows the extensions `ids` to start the host at `path`, which is UTF-8.
std::string manifest_text(const std::string& path, id_form form,
                          const std::vector<std::string>& ids);
