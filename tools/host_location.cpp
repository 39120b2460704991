#include "tools/host_location.h"

#include <cstdio>
#include <memory>

#include "platform/module_folder.h"

namespace {

struct file_closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

bool can_be_read(const std::string& path) {
  return std::unique_ptr<std::FILE, file_closer>(std::fopen(path.c_str(), "rb")) != nullptr;
}

}  // namespace

std::string own_host_path() {
  const std::string folder = platform::module_folder();
  if (folder.empty()) return {};
  std::string beside = folder + "cfhost";
  if (folder.size() < 2) return beside;
  // Systems whose separator isn't a solidus have no such tree: everything lies in one folder.
  const std::size_t parent = folder.rfind('/', folder.size() - 2);
  if (parent == std::string::npos) return beside;
  std::string installed = folder.substr(0, parent) + "/libexec/cfhost/cfhost";
  return can_be_read(installed) ? installed : beside;
}
