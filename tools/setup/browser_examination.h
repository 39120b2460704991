// Whether a browser is let, and has a manifest, to start the host.
#pragma once

#include <optional>
#include <string>

#include "tools/setup/host_examination.h"
#include "tools/setup/setup_options.h"

// Gives the host that the browser would start, if a manifest names one. Enters what it finds into
// the report, and what could be put right into `repairs`. `own_host` is the host that would be
// registered.
std::optional<host_start> examine_browser(const browser& subject, const setup_options& options,
                                          const std::string& own_host, report& out,
                                          repair_list& repairs);
