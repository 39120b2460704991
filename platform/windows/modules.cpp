#include <windows.h>
// To be included after windows.h.
#include <shlwapi.h>

#include "platform/platform.h"
#include "platform/windows/native.h"

namespace platform {
namespace {

HMODULE native_handle(module_handle module) { return static_cast<HMODULE>(module); }

// Starts with a drive's root or a share. For anything else the loader would search.
bool is_full_path(const wide_string& path) {
  if (path.size() < 3) return false;
  const wide_view text(path);
  return text.substr(0, 2) == u"\\\\" || text.substr(1, 2) == u":\\";
}

}  // namespace

module_handle own_module() { return GetModuleHandleW(nullptr); }

wide_string library_path_beside(module_handle module, wide_view name) {
  wchar_t path[max_path_size] = {};
  const DWORD length = GetModuleFileNameW(native_handle(module), path, max_path_size);
  // A path that doesn't fit is cut, and would name some other folder.
  if (length == 0 || length >= max_path_size) return {};
  const wide_string file = wide_string(name) + u".dll";
  PathRemoveFileSpecW(path);
  if (PathAddBackslashW(path) == nullptr) return {};
  return PathAppendW(path, native(file.c_str())) == 0 ? wide_string() : from_native(path);
}

void restrict_library_search() { SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS); }

module_handle load_library(const wide_string& path) {
  if (!is_full_path(path)) return nullptr;
  constexpr DWORD own_and_system = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;
  return LoadLibraryExW(native(path.c_str()), nullptr, own_and_system);
}

void* library_symbol(module_handle module, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(native_handle(module), name));
}

void unload_library(module_handle module) { FreeLibrary(native_handle(module)); }

}  // namespace platform
