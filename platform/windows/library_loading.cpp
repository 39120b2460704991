#include "platform/library_loading.h"

#include <windows.h>

#include "platform/files.h"
#include "platform/library_facts.h"

namespace platform {
namespace {

constexpr std::size_t largest_library = std::size_t{64} << 20;

std::string error_text(DWORD error) {
  char text[256] = {};
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                error, 0, text, sizeof text, nullptr);
  while (length > 0 && static_cast<unsigned char>(text[length - 1]) <= ' ') --length;
  return length > 0 ? std::string(text, length) : "error " + std::to_string(error);
}

// Loads the library as data, so that none of its code runs.
bool can_be_found(const std::string& name) {
  const HMODULE module = LoadLibraryExA(name.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  if (module != nullptr) FreeLibrary(module);
  return module != nullptr;
}

// Searches for the name, which the system doesn't report.
std::string missing_import(const std::string& path) {
  std::string content, ignored;
  if (!read_file(path, largest_library, content, ignored)) return {};
  for (std::string& name : facts_of_library(content).imports) {
    if (!can_be_found(name)) return std::move(name);
  }
  return {};
}

}  // namespace

load_attempt try_to_load(const std::string& path) {
  // A program's own folder is searched first, and the host lies beside its library.
  SetDllDirectoryA(folder_of(path).c_str());
  load_attempt result;
  result.module = LoadLibraryA(path.c_str());
  if (result.module != nullptr) return result;
  result.error = error_text(GetLastError());
  result.missing = missing_import(path);
  return result;
}

}  // namespace platform
