// Tables of cases in text, and text that shows every byte.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/wide.h"

// Runs `actual` on every case of a table. A table holds "input => expected" in each line, or
// several times in a line, between " ;; "; in an input <0A> stands for that byte.
void check(const std::function<std::string(const std::string&)>& actual, const std::string& table);

// Text in which everything but printable ASCII shows as <0A> or <20AC>.
std::string shown(std::string_view bytes);
std::string shown(wide_view units);
