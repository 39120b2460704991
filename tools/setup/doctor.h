// Finds out why a browser doesn't start the host.
#pragma once

#include "tools/report.h"
#include "tools/setup/repair.h"
#include "tools/setup/setup_options.h"

// Examines the registrations of the chosen browsers, and starts each host that they name to examine
// that too. Adds what it finds to the report, and what can be repaired to `repairs`; changes
// nothing. `own_host` is the host that would be registered.
void examine(const setup_options& options, const std::string& own_host, report& out,
             repair_list& repairs);
