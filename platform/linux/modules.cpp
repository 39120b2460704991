#include <dlfcn.h>
#include <unistd.h>

#include <climits>

#include "platform/platform.h"

namespace platform {
namespace {

// File names here are bytes, which need not be UTF-8. One unit carries one byte, so that every path
// comes back exactly.
wide_string wide_path(std::string_view bytes) {
  wide_string path;
  for (const char byte : bytes) path.push_back(static_cast<unsigned char>(byte));
  return path;
}

std::string narrow_path(const wide_string& path) {
  std::string bytes;
  for (const wide_char unit : path) bytes.push_back(static_cast<char>(unit));
  return bytes;
}

}  // namespace

// The only module whose folder is ever asked for is the executable; the handle just says so.
module_handle own_module() {
  static char executable;
  return &executable;
}

wide_string library_path_beside(module_handle, wide_view name) {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || length == sizeof path) return {};  // none, or perhaps cut
  const std::string_view executable(path, static_cast<std::size_t>(length));
  const std::string_view folder = executable.substr(0, executable.rfind('/') + 1);
  return wide_path(folder).append(name).append(u".so");
}

module_handle load_library(const wide_string& path) {
  // The loader replaces words behind a '$', which could lead to another folder.
  if (path.empty() || path.front() != u'/' || path.find(u'$') != path.npos) return nullptr;
  return dlopen(narrow_path(path).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* library_symbol(module_handle module, const char* name) { return dlsym(module, name); }

void unload_library(module_handle module) { dlclose(module); }

}  // namespace platform
