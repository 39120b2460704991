// The manifest by which a browser knows a native-messaging host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/setup/browsers.h"

// The name of the host, which is also that of its manifests.
inline constexpr char host_name[] = "com.orvanta.coffer";

struct manifest {
  std::string name;
  std::string type;
  std::string path;                  // of the host
  std::vector<std::string> allowed;  // as listed: origins, or for Firefox ids
};

// Members of other kinds than a manifest has them come out empty. Nothing, with what is wrong and
// where in `error`, if the text is no JSON object.
std::optional<manifest> parse_manifest(std::string text, id_form form, std::string& error);

// Whether the bytes are well-formed UTF-8, as all text of a manifest has to be.
bool is_utf8(const std::string& text);

// The manifest that lets the extensions `ids` start the host at `path`, which is UTF-8.
std::string manifest_text(const std::string& path, id_form form,
                          const std::vector<std::string>& ids);
