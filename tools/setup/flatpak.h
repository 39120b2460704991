// What a browser in the sandbox of a Flatpak needs to start the host: a script inside of the
// sandbox that has the host started outside of it, and the permission to do so.
#pragma once

#include <string>

#include "tools/setup/setup_options.h"

// Where the browser's script lies, which it sees under the same path.
std::string flatpak_script_path(const browser& about, const setup_options& options);

std::string flatpak_script(const std::string& host);

// The host that the program at `path` starts if it is such a script; otherwise `path`.
std::string host_behind(const std::string& path);

// Whether the Flatpak may start programs outside of its sandbox, as far as its settings and those
// of the user and of the system say.
bool may_leave_sandbox(const browser& about, const setup_options& options);

// The command that lets it.
std::string permission_command(const browser& about);
