// What the command lines of all companion programs have in common.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

// The exit value for arguments that can't be used.
inline constexpr int exit_usage = 2;

// Gives the program --help, -h and --version, and sets the format of the help.
void add_common_options(CLI::App& app);

// `arguments` excludes the program's name. Returns nothing if the program is to go on. Otherwise
// the exit value, after printing the help, the version or what is wrong with the arguments.
std::optional<int> parse_command_line(CLI::App& app, std::vector<std::string> arguments);

// Stops the parsing because of one option's value.
[[noreturn]] void refuse_value(const std::string& reason);
