// Finds what a place holds already.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/manifest.h"

struct present_manifest {
  bool registered = false;
  std::string file;  // the one that the browser uses, whether it exists or not
  std::string text;  // also empty if it can't be read
  std::string host;  // as the browser starts it; also empty if this isn't a manifest
  std::vector<std::string> ids;
};

present_manifest look_at_present(const platform::manifest_place& place, id_form form);

// Whether the manifest makes the browser start the host, directly or through a recorder.
bool starts_host(const present_manifest& present, const std::string& host);

// Whether both paths lead to the same program.
bool is_same_host(const std::string& one, const std::string& other);
