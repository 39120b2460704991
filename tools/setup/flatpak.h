// What a browser in a Flatpak sandbox needs to start the host: a script inside the sandbox that has
// the host started outside it, and the permission to do so.
#pragma once

#include <string>

#include "tools/setup/setup_options.h"

// Where the browser's script lies. The browser sees it under the same path.
std::string flatpak_script_path(const browser& about, const setup_options& options);

std::string flatpak_script(const std::string& host);

// If the program at `path` is such a script, the host that it starts; otherwise `path`.
std::string host_behind(const std::string& path);

// Whether the Flatpak may start programs outside its sandbox, according to its settings and those
// of the user and the system.
bool may_leave_sandbox(const browser& about, const setup_options& options);

// The command that gives it this permission.
std::string permission_command(const browser& about);
