// Files and folders, for the companion programs and the development agent. Paths are in the
// program's code page. `error` receives a text for people: what failed and why.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

bool is_absolute_path(const std::string& path);

// `folder` and `name` with one separator in between.
std::string path_below(const std::string& folder, const std::string& name);

// The folder that holds `path`, without a separator at its end unless it is the root.
std::string folder_of(const std::string& path);

// Name of a program's or library's file on this system.
std::string program_file_name(const std::string& name);
std::string library_file_name(const std::string& name);

struct file_facts {
  bool exists = false;
  bool is_folder = false;
  bool readable = false;    // by this user
  bool executable = false;  // by this user, and a file
};

// What is at `path` once links are followed.
file_facts look_at(const std::string& path);

// The file that a program started as `path` takes for its own: on systems that follow links at the
// start, the file that they lead to; elsewhere `path`.
std::string started_file(const std::string& path);

// True with the whole content, false when the file can't be read or is longer than `limit` bytes.
bool read_file(const std::string& path, std::size_t limit, std::string& content,
               std::string& error);

// Who may look into folders that are created. Programs keep what is the user's alone in the folders
// of a user's settings.
enum class folder_readers { owner, everybody };

// Writes the file in one step: readers find the old content or the new. Missing folders are
// created, on Windows with the rights of the folder around them. Everybody may read the file; only
// the owner may write it.
bool write_file(const std::string& path, const std::string& content, folder_readers readers,
                std::string& error);

bool remove_file(const std::string& path, std::string& error);

}  // namespace platform
