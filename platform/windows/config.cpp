#include <windows.h>
// The other headers of the system build on that one.
#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <cwchar>
#include <limits>

#include "platform/platform.h"
#include "platform/windows/native.h"

namespace platform {
namespace {

static_assert(CSIDL_COMMON_APPDATA == 35);

wide_string path_of(const config_key& key) {
  wchar_t path[max_path_size] = {};
  SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path);
  // What is appended to nothing would be found in the working directory.
  if (path[0] == 0) return {};
  const wide_string below = wide_string(key.folder).append(1, u'\\').append(key.file);
  PathAppendW(path, native(below.c_str()));
  return from_native(path);
}

// The runtime wraps around where a value is too large, and a large value could come out as 0.
bool is_beyond_32_bits(const wide_char* text, bool& negative) {
  const long long value = std::wcstoll(native(text), nullptr, 10);
  negative = value < 0;
  return value < std::numeric_limits<std::int32_t>::min() ||
         value > std::numeric_limits<std::int32_t>::max();
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

std::int32_t leading_integer(const wide_char* text) {
  bool negative = false;
  if (!is_beyond_32_bits(text, negative)) return _wtoi(native(text));
  return negative ? std::numeric_limits<std::int32_t>::min()
                  : std::numeric_limits<std::int32_t>::max();
}

}  // namespace platform
