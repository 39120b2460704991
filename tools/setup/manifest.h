// The manifest by which a browser knows a native-messaging host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/setup/browsers.h"

// The name of the host, which is also that of its manifests.
inline constexpr char host_name[] = "com.orvanta.coffer";

// What is longer is no manifest.
inline constexpr std::size_t max_manifest_size = std::size_t{16} << 20;

// What a manifest says; nothing for members that it lacks or that are of another kind. Of several
// with one name the last counts.
struct manifest {
  std::optional<std::string> name;
  std::optional<std::string> description;
  std::optional<std::string> type;
  std::optional<std::string> path;                  // of the host
  std::optional<std::vector<std::string>> allowed;  // as listed: origins, or for Firefox ids
  std::string unknown;  // a member that the browser doesn't know and doesn't bear with
};

// Nothing, with what is wrong and where in `error`, if the text is none that a browser with
// manifests of this form would read.
std::optional<manifest> parse_manifest(const std::string& text, id_form form, std::string& error);

// Ids of the extensions that a manifest lets in.
std::vector<std::string> allowed_ids(const manifest& of, id_form form);

struct manifest_fault {
  const char* id;    // as in the report
  std::string text;  // goes behind the name of the file
};

// Why the browser doesn't take the manifest, apart from the host's path.
std::vector<manifest_fault> faults_of(const manifest& judged, id_form form);

// Whether the bytes are well-formed UTF-8, as all text of a manifest has to be.
bool is_utf8(const std::string& text);

// The manifest that lets the extensions `ids` start the host at `path`, which is UTF-8.
std::string manifest_text(const std::string& path, id_form form,
                          const std::vector<std::string>& ids);
