#include "platform/policies.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {
namespace {

void add_files(const std::string& folder, std::vector<std::string>& files) {
  const auto start = static_cast<std::ptrdiff_t>(files.size());
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
       at.increment(error)) {
    files.push_back(at->path().string());
  }
  std::sort(files.begin() + start, files.end());
}

}  // namespace

std::vector<std::string> policy_files(const browser_places& browser, const std::string& root) {
  std::vector<std::string> files;
  for (std::string_view folders = browser.policies == nullptr ? "" : browser.policies;
       !folders.empty();) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    add_files(path_in_system(std::string(folders.substr(0, end)), root), files);
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return files;
}

std::optional<registry_policy> policy_in_registry(const browser_places&, registration_scope,
                                                  const char*) {
  return std::nullopt;
}

}  // namespace platform
