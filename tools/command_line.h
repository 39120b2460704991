// What the command lines of all companion programs have in common.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

// For arguments that can't be used.
inline constexpr int exit_usage = 2;

// Gives the program --help, -h and --version, and the form of the help.
void add_common_options(CLI::App& app);

// `arguments` are without the program's name. Nothing to go on with; otherwise the value to exit
// with, once help, version or what is wrong with the arguments has been printed.
std::optional<int> parse_command_line(CLI::App& app, std::vector<std::string> arguments);

// Ends the parsing with a fault of one option's value.
[[noreturn]] void refuse_value(const std::string& reason);
