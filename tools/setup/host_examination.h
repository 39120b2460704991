// Whether a registered host can do its work.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/report.h"

// Looks at the host, at the agent library beside it and at who may change them, then starts the
// host with the arguments that the browser `title` would give it.
void examine_host(const char* title, const std::string& path,
                  const std::vector<std::string>& arguments, report& out);
