// Reads INI text by the rules that INI files have always had.
#pragma once

#include <optional>
#include <string_view>

// The first value of `key` in the first section named `section`; both names compare without regard
// to the case of ASCII letters. Blanks around names and values are ignored, one pair of quotes
// around a value is removed, and a line that starts with ';' is a comment. The result points into
// `text`.
std::optional<std::string_view> find_ini_value(std::string_view text, std::string_view section,
                                               std::string_view key);
