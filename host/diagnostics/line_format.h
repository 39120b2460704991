// The small formatter behind the diagnostics. It serves both widths, since the C library's wide
// conversions differ between systems.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "platform/wide.h"

// Formats into `out`, which has room for `capacity` elements; longer text is cut, and the result is
// always terminated. Knows %d with a width, %s (a terminated string of `out`'s own width), %S (one
// of the other width, ASCII) and %%. Anything else is copied as it stands. Returns `out`.
char* format_line(char* out, std::size_t capacity, const char* format, std::va_list arguments);
wide_char* format_line(wide_char* out, std::size_t capacity, const wide_char* format,
                       std::va_list arguments);
