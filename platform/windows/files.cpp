#include "platform/files.h"

#include <windows.h>
// To be included after windows.h.
#include <io.h>

#include <cctype>

#include "platform/windows/handle.h"

namespace platform {
namespace {

std::string reason(const char* action, const std::string& path) {
  const DWORD error = GetLastError();
  char text[256] = {};
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                error, 0, text, sizeof text, nullptr);
  while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r')) --length;
  const std::string what = length > 0 ? std::string(text, length) : std::to_string(error);
  return std::string("can't ") + action + ' ' + path + ": " + what;
}

bool is_separator(char c) { return c == '\\' || c == '/'; }

bool make_folders(const std::string& path, std::string& error) {
  if (look_at(path).is_folder) return true;
  const std::string parent = folder_of(path);
  if (parent != path && !make_folders(parent, error)) return false;
  if (CreateDirectoryA(path.c_str(), nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS) {
    return true;
  }
  error = reason("make the folder", path);
  return false;
}

bool fill(const std::string& path, const std::string& content) {
  const handle file(CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD count = 0;
  return file.valid() &&
         WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &count,
                   nullptr) != 0 &&
         count == content.size() && FlushFileBuffers(file.get()) != 0;
}

}  // namespace

bool is_absolute_path(const std::string& path) {
  const bool has_drive = path.size() >= 3 &&
                         std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':' &&
                         is_separator(path[2]);
  return has_drive || path.starts_with(R"(\\)");
}

std::string path_below(const std::string& folder, const std::string& name) {
  const bool complete = !folder.empty() && is_separator(folder.back());
  return complete ? folder + name : folder + '\\' + name;
}

std::string folder_of(const std::string& path) {
  const std::size_t separator = path.find_last_of(R"(\/)");
  if (separator == std::string::npos) return ".";
  // The root of a drive keeps its separator.
  return separator == 2 && path[1] == ':' ? path.substr(0, 3) : path.substr(0, separator);
}

std::string program_file_name(const std::string& name) { return name + ".exe"; }
std::string library_file_name(const std::string& name) { return name + ".dll"; }

file_facts look_at(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return {};
  const bool is_folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  constexpr int may_read = 4;
  DWORD type = 0;
  const bool executable = !is_folder && GetBinaryTypeA(path.c_str(), &type) != 0;
  return {true, is_folder, _access(path.c_str(), may_read) == 0, executable};
}

std::string started_file(const std::string& path) { return path; }

bool read_file(const std::string& path, std::size_t limit, std::string& content,
               std::string& error) {
  const handle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  content.resize(limit + 1);
  DWORD count = 0;
  if (!file.valid() || ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()),
                                &count, nullptr) == 0) {
    error = reason("read", path);
    return false;
  }
  content.resize(count);
  if (count > limit) error = path + " is longer than " + std::to_string(limit) + " bytes";
  return count <= limit;
}

bool write_file(const std::string& path, const std::string& content, folder_readers,
                std::string& error) {
  if (!make_folders(folder_of(path), error)) return false;
  const std::string temporary = path + '.' + std::to_string(GetCurrentProcessId());
  if (fill(temporary, content) &&
      MoveFileExA(temporary.c_str(), path.c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
    return true;
  }
  error = reason("write", path);
  DeleteFileA(temporary.c_str());
  return false;
}

bool remove_file(const std::string& path, std::string& error) {
  if (DeleteFileA(path.c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND) return true;
  error = reason("remove", path);
  return false;
}

}  // namespace platform
