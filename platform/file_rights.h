// Who may change files, which decides what can be trusted. Used by the companion programs.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Whether this process may do everything, so that what it starts or writes for somebody else does
// harm. Always false on systems where administrators work as ordinary users.
bool is_superuser();

// Whether somebody may change the file or folder who is neither this user nor an administrator.
bool others_may_write(const std::string& path);

// Those of the file and all folders above it, with links followed and without, for which that
// holds; the file first, each once.
std::vector<std::string> parts_that_others_may_write(const std::string& path);

// The uppermost folder or link on the way to `path`, which need not be there, whose owner could
// lead who writes there to another place; empty if there is none. Looks at links themselves.
std::string foreign_part(const std::string& path);

// Takes the right to write from everybody but the owner, who has to be this user.
bool keep_others_from_writing(const std::string& path, std::string& error);

// Lets everybody start the program at `path`, which this user owns.
bool make_executable(const std::string& path, std::string& error);

}  // namespace platform
