// The host's one diagnostic channel, the debugger output of the operating system, and its switch.
//
// A caller tests `dump_off` before it logs, and computes nothing for the call while that is set:
//
//   if (!dump_off) log_line("fragment=%d\r\n", number);
//
// Any thread may log. A line goes out whole, in one system call.
//
// The texts of the lines are fixed, misspellings included: tools and people match them.
#pragma once

#include <cstddef>

#include "platform/wide.h"

// True while diagnostics are off. Written by read_dump_switch alone, before any other thread runs.
extern bool dump_off;

// Sets the switch from the configuration: key "dump" of section "coffer", a decimal integer;
// anything but 0 means on. Diagnostics stay off if the value can't be read.
void read_dump_switch();

// Copies the switch as the configuration has it, and terminates it; returns its length. A value
// that doesn't fit is cut, and counts as missing.
constexpr std::size_t max_dump_value = 260;
std::size_t dump_switch_text(wide_char (&out)[max_dump_value]);

// Write one line: the thread's id, the host's tag, and the text that `format` and its arguments
// give, cut at 254 elements in all. They don't test the switch or allocate memory, and don't fail;
// the result is always 0. In the wide form %s stands for a wide string.
[[gnu::format(printf, 1, 2)]] int log_line(const char* format, ...);
int log_line_w(const wide_char* format, ...);

// What a line shows for a text that may be null.
inline const char* text_or_na(const char* text) { return text != nullptr ? text : "N/A"; }
