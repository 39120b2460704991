// What stands in the way of a change of a registration, and how the report tells of it.
#pragma once

#include <string>

#include "tools/report.h"
#include "tools/setup/present_manifest.h"
#include "tools/setup/setup_options.h"

platform::registration_scope scope_of(const setup_options& options);

// Where a manifest is, and what it needs to be taken for it.
std::string shown(const platform::manifest_place& place);

report_entry failure(const browser& of, const char* id, std::string text, std::string advice = {});

// The system didn't let it happen.
report_entry unable(const browser& of, const char* id, std::string text,
                    const setup_options& options);

// The manifest isn't this host's.
report_entry other_host(const browser& of, const present_manifest& present);

// True, and told in the report, if the change is root's and a user could lead it to another place.
bool is_led_elsewhere(const browser& of, const platform::manifest_place& place,
                      const setup_options& options, report& out);

// ", `what` Chrome and Brave" if they share the place.
std::string for_sharers(const browser& of, const setup_options& options, const char* what);

void add_for_nobody(report& out, severity weight);
