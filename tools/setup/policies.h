// What an administrator's policies let a browser do with the host.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/setup_options.h"

struct policy_findings {
  std::string blocks_host;         // the file or registry key that decides it, or empty
  std::string forbids_user_hosts;  // likewise: the browser ignores users' own manifests
};

// What the browser's policies finally say about hosts. A browser without policies may do
// everything.
policy_findings host_policies(const browser& about, const setup_options& options);

// The file or registry key that blocks the extension in the browser; empty if none does.
std::string extension_blocked(const browser& about, const setup_options& options,
                              const std::string& id);
