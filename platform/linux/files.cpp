#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/linux/descriptor.h"
#include "platform/linux/failure_text.h"

namespace platform {
namespace {

constexpr mode_t own_folder_mode = 0700;
constexpr mode_t shared_folder_mode = 0755;
constexpr mode_t file_mode = 0644;

bool write_all(int fd, const std::string& content) {
  std::size_t done = 0;
  while (done < content.size()) {
    const ssize_t count = write(fd, content.data() + done, content.size() - done);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  return true;
}

// Shared folders stay open to everybody even under an administrator's stricter umask.
bool make_folder(const std::string& path, folder_readers readers) {
  if (readers == folder_readers::owner) return mkdir(path.c_str(), own_folder_mode) == 0;
  return mkdir(path.c_str(), shared_folder_mode) == 0 &&
         chmod(path.c_str(), shared_folder_mode) == 0;
}

// Goes up only while folders are missing; a path that is too long ends the recursion at once.
bool make_folders(const std::string& path, folder_readers readers, std::string& error) {
  if (look_at(path).is_folder || make_folder(path, readers)) return true;
  const std::string parent = folder_of(path);
  if (errno == ENOENT && parent != path) {
    if (!make_folders(parent, readers, error)) return false;
    if (make_folder(path, readers)) return true;
  }
  if (errno != EEXIST) {
    error = failure_text("make the folder", path);
    return false;
  }
  // Another program may have been faster.
  if (look_at(path).is_folder) return true;
  error = path + " is a link that leads nowhere, or no folder: remove it first";
  return false;
}

// The content must be on the disk before the name: a crash in between would leave an empty file.
bool fill(descriptor file, const std::string& content) {
  return write_all(file.get(), content) && fchmod(file.get(), file_mode) == 0 &&
         fsync(file.get()) == 0 && file.close();
}

}  // namespace

bool is_absolute_path(const std::string& path) { return !path.empty() && path.front() == '/'; }

std::string path_below(const std::string& folder, const std::string& name) {
  std::string path = folder;
  if (path.empty() || path.back() != '/') path += '/';
  return path.append(name, name.find_first_not_of('/'), std::string::npos);
}

std::string folder_of(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return ".";
  return separator == 0 ? "/" : path.substr(0, separator);
}

std::string program_file_name(const std::string& name) { return name; }
std::string library_file_name(const std::string& name) { return name + ".so"; }

file_facts look_at(const std::string& path) {
  struct stat found = {};
  if (stat(path.c_str(), &found) != 0) return {};
  const bool is_folder = S_ISDIR(found.st_mode);
  return {true, is_folder, access(path.c_str(), R_OK) == 0,
          !is_folder && access(path.c_str(), X_OK) == 0};
}

std::string started_file(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) != nullptr ? resolved : path;
}

bool read_file(const std::string& path, std::size_t limit, std::string& content,
               std::string& error) {
  // Doesn't wait: a pipe in the file's place must not hold anybody up.
  const descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.valid()) {
    error = failure_text("read", path);
    return false;
  }
  content.resize(limit + 1);
  std::size_t size = 0;
  ssize_t count = 0;
  do {
    count = read(file.get(), content.data() + size, content.size() - size);
    if (count > 0) size += static_cast<std::size_t>(count);
  } while (size <= limit && (count > 0 || (count < 0 && errno == EINTR)));
  if (count < 0) error = failure_text("read", path);
  if (size > limit) error = path + " is longer than " + std::to_string(limit) + " bytes";
  content.resize(size);
  return count >= 0 && size <= limit;
}

bool write_file(const std::string& path, const std::string& content, folder_readers readers,
                std::string& error) {
  if (!make_folders(folder_of(path), readers, error)) return false;
  // Reaching the limit on file sizes is an error like a full disk, and must leave nothing behind.
  std::signal(SIGXFSZ, SIG_IGN);
  std::string temporary = path + ".XXXXXX";
  descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  const bool made = file.valid();
  if (made && fill(std::move(file), content) && rename(temporary.c_str(), path.c_str()) == 0) {
    return true;
  }
  error = failure_text("write", path);
  if (made) unlink(temporary.c_str());
  return false;
}

bool remove_file(const std::string& path, std::string& error) {
  if (unlink(path.c_str()) == 0 || errno == ENOENT) return true;
  error = failure_text("remove", path);
  return false;
}

}  // namespace platform
