// Text from outside on a terminal.
#pragma once

#include <string>
#include <string_view>

// `text` as one line that no terminal takes for a command, and that reads in the order in which it
// is written: white space becomes blanks, any other control character, marks of direction, and
// bytes that are no UTF-8 become escapes as JSON has them.
std::string printable_line(std::string_view text);
