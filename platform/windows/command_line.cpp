#include "platform/windows/command_line.h"

namespace platform {
namespace {

// Backslashes stand for themselves, except in front of a quote, where each is doubled. That
// includes the quote which closes the argument.
std::string quoted(const std::string& argument) {
  std::string text = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, '\\') + '"';
}

}  // namespace

std::string join_arguments(const std::string& program, const std::vector<std::string>& arguments) {
  // A path holds no quote, and its backslashes stand for themselves.
  std::string line = '"' + program + '"';
  for (const std::string& argument : arguments) line += ' ' + quoted(argument);
  return line;
}

}  // namespace platform
