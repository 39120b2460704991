// The one text in which a program receives its arguments.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Joins a program's path and its arguments so that the runtime of the started program splits them
// into the same ones again.
std::string join_arguments(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace platform
