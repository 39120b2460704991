// Finds out why a browser doesn't start the host.
#pragma once

#include "tools/setup/report.h"
#include "tools/setup/setup_options.h"

// Examines the registrations of the chosen browsers, and each host that one of them names by
// starting it. Enters what it finds into the report; changes nothing.
void examine(const setup_options& options, report& out);
