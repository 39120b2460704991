// Tables of cases in text, and text that shows every byte.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/wide.h"

// Runs `actual` on every case of a table. Each line of a table holds "input => expected", or
// several of these with " ;; " in between; <0A> in an input stands for that byte. The table begins
// on the line of the call, so that a failure shows the line of its case.
void check(const std::function<std::string(const std::string&)>& actual, std::string_view table,
           const char* file = __builtin_FILE(), int line = __builtin_LINE());

// The same for a file with one case per line.
void check_file(const std::function<std::string(const std::string&)>& actual,
                const std::string& path);

// Text in which everything but printable ASCII shows as <0A> or <20AC>.
std::string shown(std::string_view bytes);
std::string shown(wide_view units);
