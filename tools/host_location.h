// Where the companion programs find the host that they were installed with.
#pragma once

#include <string>

// Path of the host that belongs to this program: the one beside it, as in a build folder or an
// unpacked archive, or that of an installed tree, PREFIX/libexec/cfhost/cfhost for PREFIX/bin. An
// absolute path without "..", with or without the extension of a program. Empty when the folder of
// this program can't be found out; whether the host is there at all isn't looked at.
std::string own_host_path();
