#include "platform/module_folder.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <climits>

namespace platform {
namespace {

std::string executable_path() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  return length <= 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

// The loader knows the path of each library, but calls the executable by whatever name it was
// started with; its own list has no name for it at all.
std::string module_path() {
  Dl_info info;
  void* entry = nullptr;
  const auto* const own_address = reinterpret_cast<const void*>(&module_folder);
  if (dladdr1(own_address, &info, &entry, RTLD_DL_LINKMAP) == 0) return {};
  const std::string name = static_cast<const link_map*>(entry)->l_name;
  return name.empty() ? executable_path() : name;
}

}  // namespace

std::string module_folder() {
  const std::string path = module_path();
  return path.substr(0, path.rfind('/') + 1);
}

}  // namespace platform
