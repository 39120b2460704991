#include "messages/loader/client_library.h"

iCfClient* agent_client = nullptr;

namespace {

constexpr wide_view client_library_name = u"cfagent";

}  // namespace

client_loader client_library;

bool load_client_next_to(platform::module_handle module) {
  return load_client_library(platform::library_path_beside(module, client_library_name));
}

bool load_client_library(const wide_string& path) {
  client_library.path = path;
  if (client_library.module != nullptr) return false;

  const platform::module_handle module = platform::load_library(path);
  if (module == nullptr) return false;
  void* const entry = platform::library_symbol(module, api_entry_name);
  if (entry == nullptr) {
    platform::unload_library(module);
    return false;
  }
  client_library.module = module;
  client_library.api = reinterpret_cast<api_entry*>(entry)();
  return true;
}

void unload_client_library() {
  const platform::module_handle module = client_library.module;
  client_library.api = nullptr;
  client_library.module = nullptr;
  if (module != nullptr) platform::unload_library(module);
  client_library.path.clear();
  client_library.path.shrink_to_fit();
}
