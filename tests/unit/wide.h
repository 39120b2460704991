// Wide text from what a row of a table has.
#pragma once

#include <string>

#include "transport/codecs/text.h"

inline wide_string wide(const std::string& text) {
  wide_string result;
  utf8_to_wide(result, text.data(), static_cast<std::uint32_t>(text.size()));
  return result;
}
