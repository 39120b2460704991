#include "platform/module_folder.h"

#include <windows.h>

namespace platform {
namespace {

// The longest path that the system returns uncut.
constexpr DWORD long_path_size = 32768;

std::wstring module_path() {
  HMODULE module = nullptr;
  const auto* const own_address = reinterpret_cast<const wchar_t*>(&module_folder);
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          own_address, &module) == 0) {
    return {};
  }
  std::wstring path(long_path_size, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), long_path_size));
  return path;
}

// Converts to the code page that the runtime uses for file names. Empty if that can't express the
// text.
std::string file_name_text(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  BOOL lossy = FALSE;
  std::string narrow(3 * text.size(), '\0');
  // UTF-8 can express everything but lone surrogates, and has flags of its own to report those.
  const bool is_utf8 = GetACP() == CP_UTF8;
  const int length = WideCharToMultiByte(
      CP_ACP, is_utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, text.data(), size,
      narrow.data(), 3 * size, nullptr, is_utf8 ? nullptr : &lossy);
  narrow.resize(lossy != 0 ? 0 : static_cast<std::size_t>(length));
  return narrow;
}

}  // namespace

std::string module_folder() {
  const std::wstring path = module_path();
  return file_name_text(path.substr(0, path.rfind(L'\\') + 1));
}

}  // namespace platform
