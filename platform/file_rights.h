// Who may change files, which decides what can be trusted. Used by the companion programs.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Whether this process may do everything, so that starting programs or writing files on behalf of
// somebody else is dangerous. Always false on systems where administrators work as ordinary users.
bool is_superuser();

// Whether somebody other than this user or an administrator may change the file or folder.
bool others_may_write(const std::string& path);

// Of the file and all folders above it, with and without links followed, those that others may
// write. The file comes first, and each path is listed once.
std::vector<std::string> parts_that_others_may_write(const std::string& path);

// The uppermost folder or link on the way to `path` (which need not exist) whose owner could
// redirect a write to another place; empty if there is none. Links are judged themselves, not what
// they lead to.
std::string foreign_part(const std::string& path);

// Takes write permission from everybody but the owner, who has to be this user.
bool keep_others_from_writing(const std::string& path, std::string& error);

// Lets everybody start the program at `path`, which this user owns.
bool make_executable(const std::string& path, std::string& error);

}  // namespace platform
