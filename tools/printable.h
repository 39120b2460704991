// Text from outside on a terminal.
#pragma once

#include <string>
#include <string_view>

// `text` as one line that no terminal takes for a command: white space becomes blanks, any other
// control character an escape as JSON has it, so that a JSON text keeps its meaning.
std::string printable_line(std::string_view text);
