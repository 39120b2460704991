// Conversion between the narrow UTF-8 of JSON and frames and the wide UTF-16 of the messages.
#pragma once

#include <cstdint>
#include <string>

#include "platform/wide.h"

// Replace `out` by the converted text, up to its first NUL. `length` counts bytes, or UTF-16 units;
// no terminator is looked for in the input. Malformed text is no failure; platform.h says how it is
// replaced. False, with `out` untouched, for a null pointer (whatever the length), or if memory for
// the result is lacking or the system refuses.
bool utf8_to_wide(wide_string& out, const char* text, std::uint32_t length);
bool wide_to_utf8(std::string& out, const wide_char* text, std::uint32_t length);

// An empty view is an empty text, whatever it points to.
inline bool wide_to_utf8(std::string& out, wide_view text) {
  if (text.empty()) text = u"";
  return wide_to_utf8(out, text.data(), static_cast<std::uint32_t>(text.size()));
}
