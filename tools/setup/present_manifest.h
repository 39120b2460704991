// Finds what a place holds already.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/setup/manifest.h"

struct present_manifest {
  bool registered = false;
  std::string file;                 // that the browser takes, there or not
  std::string text;                 // empty too if it can't be read
  std::optional<manifest> content;  // nothing if the browser can't make anything of the text
  std::string path;                 // that the browser starts; empty if it is none
  std::string host;                 // the same, or the host that a sandbox's script there starts
  std::vector<std::string> ids;
  std::vector<manifest_fault> faults;  // why the browser doesn't take it, apart from the path
};

present_manifest look_at_present(const platform::manifest_place& place, id_form form);

// Whether the manifest makes the browser start the host, directly or through a recorder.
bool starts_host(const present_manifest& present, const std::string& host);

// Whether both paths lead to the same program.
bool is_same_host(const std::string& one, const std::string& other);
