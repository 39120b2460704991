// Text from outside on a terminal.
#pragma once

#include <string>
#include <string_view>

// `text` as one line that contains no terminal commands and reads in the order in which it is
// written. White space becomes blanks. Other control characters, direction marks and bytes that
// aren't UTF-8 become escapes as in JSON.
std::string printable_line(std::string_view text);
