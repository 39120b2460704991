// Puts the host's manifests where browsers look for them, and takes them back.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/report.h"
#include "tools/setup/setup_options.h"

// What is longer is no manifest.
inline constexpr std::size_t max_manifest_size = 1 << 20;

// The browsers that the options name, or else those that are found on this system; none if the
// options name none and none is found.
std::vector<const browser*> chosen_browsers(const setup_options& options);

// Where the browser's manifest goes; its file is empty, with the reason in `error`, where it can't.
platform::manifest_place chosen_place(const browser& chosen, const setup_options& options,
                                      platform::registration_scope scope, std::string& error);

// Each does its work on all chosen browsers, as far as it goes, and enters each into the report.
// False if one failed; the reason is in the report.
bool install(const setup_options& options, const std::string& host, report& out);
bool remove(const setup_options& options, report& out);
bool list(const setup_options& options, report& out);
