// Examines whether a registered host can do its work.
#pragma once

#include <string>
#include <vector>

#include "tools/report.h"
#include "tools/setup/browsers.h"
#include "tools/setup/repair.h"

struct host_start {
  const char* title;     // of the browser
  std::string path;      // of the host
  std::string manifest;  // the one that names the host
  std::vector<std::string> arguments;
  std::string install;  // the command that registers the installed host instead
  id_form kind = id_form::chromium;
  bool is_manifest_good = false;  // otherwise no browser would start the host
};

// Looks at the host, at the client library beside it, and at who may change these and the manifest.
// Then starts the host with the arguments that the browser would give it; but not if the manifest
// is faulty, and not as root if others could have put the host there.
void examine_host(const host_start& start, report& out, repair_list& repairs);
