#include "platform/library_loading.h"

#include <dlfcn.h>

namespace platform {
namespace {

// The loader's message begins with the name of the file that it can't open.
std::string missing_in(const std::string& error, const std::string& path) {
  const std::size_t end = error.find(": cannot open shared object file");
  if (end == std::string::npos) return {};
  std::string name = error.substr(0, end);
  return name == path ? std::string() : name;
}

}  // namespace

load_attempt try_to_load(const std::string& path) {
  wide_string units;
  for (const char byte : path) units.push_back(static_cast<unsigned char>(byte));
  (void)dlerror();
  load_attempt result;
  result.module = load_library(units);
  const char* const error = result.module == nullptr ? dlerror() : nullptr;
  if (error != nullptr) result.error = error;
  result.missing = missing_in(result.error, path);
  return result;
}

}  // namespace platform
