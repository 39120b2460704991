// The one text that a program's arguments travel in.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Joins a program's path and its arguments so that the runtime of the started program takes them
// apart into the same ones again.
std::string join_arguments(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace platform
