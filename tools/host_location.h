// Where the companion programs find the host that they were installed with.
#pragma once

#include <string>

// The path of the host that belongs to this program. That is the one beside it, as in a build
// folder or an unpacked archive, or in an installed tree PREFIX/libexec/cfhost/cfhost for
// PREFIX/bin. An absolute path without "..", with or without the extension of a program. Empty if
// the folder of this program can't be found out. Doesn't check whether the host exists.
std::string own_host_path();
