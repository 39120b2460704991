// What the file of a library says about itself, whichever system it is for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct library_facts {
  std::string system;   // "Linux", "Windows", "macOS"; empty if the file is no program or library
  std::string machine;  // "x86-64", "aarch64", ...; a number for one that isn't known here
  bool is_library = false;           // not a program; on Linux some programs look like libraries
  std::vector<std::string> imports;  // what a Windows library needs; else empty
};

// The facts of the file with this content. Whatever it holds, nothing outside it is read.
library_facts facts_of_library(std::string_view content);

}  // namespace platform
