// What keeps a registration from being changed, and how the report says so.
#pragma once

#include <string>

#include "tools/report.h"
#include "tools/setup/present_manifest.h"
#include "tools/setup/setup_options.h"

platform::registration_scope scope_of(const setup_options& options);

// Where a manifest is, and the registry key that names it.
std::string shown(const platform::manifest_place& place);

report_entry failure(const browser& of, const char* id, std::string text, std::string advice = {});

// The system refused the change.
report_entry unable(const browser& of, const char* id, std::string text,
                    const setup_options& options);

// The manifest names another host.
report_entry other_host(const browser& of, const present_manifest& present);

// True, with an entry in the report, if root makes the change and a user could redirect it.
bool is_led_elsewhere(const browser& of, const platform::manifest_place& place,
                      const setup_options& options, report& out);

// ", `what` Chrome and Brave" if they share the place.
std::string for_sharers(const browser& of, const setup_options& options, const char* what);

void add_for_nobody(report& out, severity weight);
