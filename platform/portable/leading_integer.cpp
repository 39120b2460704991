#include <algorithm>
#include <limits>

#include "platform/platform.h"

namespace platform {

std::int32_t leading_integer(const wide_char* text) {
  while (*text == u' ' || (*text >= 9 && *text <= 13)) ++text;
  const bool negative = *text == u'-';
  if (negative || *text == u'+') ++text;

  using limits = std::numeric_limits<std::int32_t>;
  std::int64_t value = 0;
  for (; *text >= u'0' && *text <= u'9'; ++text) {
    value = std::min<std::int64_t>(value * 10 + (*text - u'0'), std::int64_t{limits::max()} + 1);
  }
  if (negative) value = -value;
  return static_cast<std::int32_t>(std::min<std::int64_t>(value, limits::max()));
}

}  // namespace platform
