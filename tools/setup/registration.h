// Puts the host's manifests where browsers look for them, and removes them.
#pragma once

#include <string>

#include "tools/report.h"
#include "tools/setup/setup_options.h"

// Each handles all chosen browsers as far as possible and reports on every one of them. `host` is
// the host to register, or the one whose registrations are removed. The manifests name `program`,
// which is the host itself or a recorder in front of it.
void install(const setup_options& options, const std::string& program, const std::string& host,
             report& out);
void remove(const setup_options& options, const std::string& host, report& out);
void list(const setup_options& options, report& out);
