// A folder with a copy of cftap, which runs in front of the host and keeps captures.
#pragma once

#include <string>

// The program in the folder that the manifest of a recording names.
std::string recording_program(const std::string& folder);

// Puts the program into `folder`, for the user alone, and writes down for it which host to start
// and what to keep. Creates the folder if necessary. False, with the reason in `error`, if that
// fails.
bool prepare_recording(const std::string& folder, const std::string& host, bool with_values,
                       std::string& error);
