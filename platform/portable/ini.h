// Reading of INI text by the rules that INI files have had since their first days.
#pragma once

#include <optional>
#include <string_view>

// The first value of `key` in the first section named `section`; both names compare without regard
// to the case of ASCII letters. Blanks around names and values don't count, one pair of quotes
// around a value is taken off, and a line that starts with ';' is a comment. The result points into
// `text`.
std::optional<std::string_view> find_ini_value(std::string_view text, std::string_view section,
                                               std::string_view key);
