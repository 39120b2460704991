// Converts between the host's wide text and the system's; both are UTF-16 here.
#pragma once

#include <string>

#include "platform/wide.h"

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(wide_char));

// The buffer size that the system's path functions take for granted, terminator included.
constexpr unsigned max_path_size = 260;

inline const wchar_t* native(const wide_char* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* native(wide_char* text) { return reinterpret_cast<wchar_t*>(text); }

inline wide_string from_native(const wchar_t* text) {
  return reinterpret_cast<const wide_char*>(text);
}

}  // namespace platform
