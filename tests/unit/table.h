// Tables of cases in text, and text that shows every byte.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/wide.h"

// Runs `actual` on every case of a table. A table holds "input => expected" in each line, or
// several times in a line, between " ;; "; in an input <0A> stands for that byte. It begins on the
// line of the call, so that a failure tells the line of its case.
void check(const std::function<std::string(const std::string&)>& actual, std::string_view table,
           const char* file = __builtin_FILE(), int line = __builtin_LINE());

// The same for a table of a line each in a file of its own.
void check_file(const std::function<std::string(const std::string&)>& actual,
                const std::string& path);

// Text in which everything but printable ASCII shows as <0A> or <20AC>.
std::string shown(std::string_view bytes);
std::string shown(wide_view units);
