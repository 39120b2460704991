// A folder in which a copy of cftap stands before the host and keeps captures.
#pragma once

#include <string>

// Where the manifest of a recording finds its program.
std::string recording_program(const std::string& folder);

// Puts the program into `folder`, which is made if need be, for the user alone, and tells it the
// host and what to keep. False, with the reason in `error`, if that fails.
bool prepare_recording(const std::string& folder, const std::string& host, bool with_values,
                       std::string& error);
