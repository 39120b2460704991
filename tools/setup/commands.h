// Commands to paste, for advice.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/places.h"

// Stand in a command where somebody has to put an extension's id, or the path of the host.
inline constexpr char id_to_fill_in[] = "ID";
inline constexpr char host_to_fill_in[] = "PATH";

// A text as one word of a shell command.
std::string shell_word(const std::string& text);

// "cfsetup COMMAND" for this browser, with the options that say where its manifests are.
std::string command_for(const char* command, const browser& about, const setup_options& options,
                        platform::registration_scope scope);

// The command that registers `host`, or the installed one if that is empty, for the extensions that
// the options name and for those that are allowed already.
std::string install_command(const browser& about, const setup_options& options,
                            platform::registration_scope scope,
                            const std::vector<std::string>& ids_there, const std::string& host);
