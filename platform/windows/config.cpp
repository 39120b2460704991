#include <windows.h>
// To be included after windows.h.
#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>

#include "platform/platform.h"
#include "platform/windows/native.h"

namespace platform {
namespace {

static_assert(CSIDL_COMMON_APPDATA == 35);

wide_string path_of(const config_key& key) {
  wchar_t path[max_path_size] = {};
  SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path);
  // A relative path would be looked for in the working directory.
  if (path[0] == 0) return {};
  const wide_string below = wide_string(key.folder).append(1, u'\\').append(key.file);
  PathAppendW(path, native(below.c_str()));
  return from_native(path);
}

}  // namespace

std::size_t config_value(const config_key& key, wide_char* out, std::size_t capacity) {
  out[0] = 0;
  const wide_string path = path_of(key);
  if (path.empty()) return 0;
  const wide_string section(key.section);
  const wide_string name(key.key);
  const auto size = static_cast<DWORD>(std::min<std::size_t>(capacity, MAXDWORD));
  return GetPrivateProfileStringW(native(section.c_str()), native(name.c_str()), nullptr,
                                  native(out), size, native(path.c_str()));
}

}  // namespace platform
