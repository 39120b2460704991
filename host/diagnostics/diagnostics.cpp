#include "host/diagnostics/diagnostics.h"

#include <cstdarg>
#include <cstdio>

#include "host/diagnostics/line_format.h"
#include "platform/platform.h"

bool dump_off = true;

namespace {

constexpr wide_char log_tag[] = u"[ cf    ] ";

constexpr platform::config_key dump_key = {u"Orvanta", u"coffer.ini", u"coffer", u"dump"};

constexpr std::size_t line_buffer_size = 256;

// The room that the formatters may fill: a line has at most 254 elements, and a terminator.
constexpr std::size_t line_room = line_buffer_size - 1;

// First stage: wraps the frame of a line around the caller's format. The format passes through as
// text, so its directives are left for the second stage.
template <class Element>
const Element* compose(Element* out, const Element* composition, ...) {
  std::va_list arguments;
  va_start(arguments, composition);
  format_line(out, line_room, composition, arguments);
  va_end(arguments);
  return out;
}

}  // namespace

std::size_t dump_switch_text(wide_char (&out)[max_dump_value]) {
  return platform::config_value(dump_key, out, max_dump_value);
}

void read_dump_switch() {
  wide_char value[max_dump_value] = {};
  const std::size_t length = dump_switch_text(value);
  // A value that fills the room was cut, so what it means isn't known.
  const bool usable = length >= 1 && length <= max_dump_value - 2;
  dump_off = !usable || platform::leading_integer(value) == 0;
}

int log_line(const char* format, ...) {
  char composed[line_buffer_size] = {};
  char line[line_buffer_size] = {};
  const char* const line_end = platform::debugger_attached() ? "\r\n" : "";
  compose(composed, "[%4d] %S%s%s", platform::current_thread_id(), log_tag, format, line_end);

  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, line_room, composed, arguments);
  va_end(arguments);
  platform::write_debug_line(line);
  return 0;
}

int log_line_w(const wide_char* format, ...) {
  wide_char composed[line_buffer_size] = {};
  wide_char line[line_buffer_size] = {};
  const wide_char* const line_end = platform::debugger_attached() ? u"\r\n" : u"";
  compose(composed, u"[%4d] %s%s%s", platform::current_thread_id(), log_tag, format, line_end);

  std::va_list arguments;
  va_start(arguments, format);
  format_line(line, line_room, composed, arguments);
  va_end(arguments);
  platform::write_debug_line(line);
  return 0;
}
