// What an administrator's policies let a browser do with the host.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/setup_options.h"

struct policy_findings {
  std::string blocks_host;         // where it is decided: a file or a registry key; or empty
  std::string forbids_user_hosts;  // likewise: the browser takes no manifest of a user's
};

// The last word of what the browser's policies say about hosts; that it has none of its own lets it
// do everything.
policy_findings host_policies(const browser& about, const setup_options& options);

// Where it is decided that the browser doesn't let the extension be there; empty if it isn't.
std::string extension_blocked(const browser& about, const setup_options& options,
                              const std::string& id);
