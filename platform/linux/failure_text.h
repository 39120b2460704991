// What an operation on a file failed with, for a person.
#pragma once

#include <cerrno>
#include <cstring>
#include <string>

namespace platform {

// Reads errno, so it has to be the first thing after the failure.
inline std::string failure_text(const char* action, const std::string& path) {
  return std::string("can't ") + action + ' ' + path + ": " + std::strerror(errno);
}

}  // namespace platform
