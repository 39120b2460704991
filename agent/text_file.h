// A small file, read whole.
#pragma once

#include <cstddef>
#include <string>

enum class file_state { present, absent, unreadable };

// Reads the file into `text`. Without one it is absent; one that can't be read, or is larger than
// `limit` bytes, is unreadable, with the reason in `problem`.
file_state read_file(const std::string& path, std::size_t limit, std::string& text,
                     std::string& problem);
