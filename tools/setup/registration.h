// Puts the host's manifests where browsers look for them, and takes them back.
#pragma once

#include <string>

#include "tools/report.h"
#include "tools/setup/setup_options.h"

// Each does its work on all chosen browsers, as far as it goes, and enters each into the report.
// `host` is the host to register, or the one whose registrations go. The manifests name `program`,
// which is the host itself or a recorder that stands before it.
void install(const setup_options& options, const std::string& program, const std::string& host,
             report& out);
void remove(const setup_options& options, const std::string& host, report& out);
void list(const setup_options& options, report& out);
