// What stands at a place already.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/manifest.h"

struct present_manifest {
  bool registered = false;
  std::string file;  // that the browser takes, there or not
  std::string text;  // empty too if it can't be read
  std::string host;  // as the browser starts it; empty too if it is no manifest
  std::vector<std::string> ids;
};

present_manifest look_at_present(const platform::manifest_place& place, id_form form);

// Whether the manifest has the browser start the host, be it through a recorder.
bool starts_host(const present_manifest& present, const std::string& host);

// Whether both paths lead to the same program.
bool is_same_host(const std::string& one, const std::string& other);
