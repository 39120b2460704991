#include "platform/file_rights.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/files.h"
#include "platform/linux/failure_text.h"

namespace platform {
namespace {

constexpr mode_t program_mode = 0755;

bool is_for_others(const struct stat& found) {
  // In a sticky folder nobody can replace what somebody else has put there.
  if (S_ISDIR(found.st_mode) && (found.st_mode & S_ISVTX) != 0) return false;
  return (found.st_mode & (S_IWGRP | S_IWOTH)) != 0 ||
         (found.st_uid != 0 && found.st_uid != geteuid());
}

void add_parts(std::string part, std::vector<std::string>& parts) {
  for (std::string above; part != above; above = part, part = folder_of(part)) {
    const bool known = std::find(parts.begin(), parts.end(), part) != parts.end();
    if (!known && others_may_write(part)) parts.push_back(part);
  }
}

bool change_mode(const std::string& path, mode_t mode, std::string& error) {
  if (chmod(path.c_str(), mode) == 0) return true;
  error = failure_text("change who may use", path);
  return false;
}

}  // namespace

bool is_superuser() { return geteuid() == 0; }

bool others_may_write(const std::string& path) {
  struct stat found = {};
  return stat(path.c_str(), &found) == 0 && is_for_others(found);
}

std::vector<std::string> parts_that_others_may_write(const std::string& path) {
  std::vector<std::string> parts;
  add_parts(started_file(path), parts);
  add_parts(path, parts);
  return parts;
}

std::string foreign_part(const std::string& path) {
  const std::string parent = folder_of(path);
  std::string found = parent == path ? std::string() : foreign_part(parent);
  struct stat here = {};
  if (!found.empty() || lstat(path.c_str(), &here) != 0) return found;
  // A link's permissions say nothing; its owner does.
  const bool foreign =
      S_ISLNK(here.st_mode) ? here.st_uid != 0 && here.st_uid != geteuid() : is_for_others(here);
  return foreign ? path : std::string();
}

bool keep_others_from_writing(const std::string& path, std::string& error) {
  struct stat found = {};
  if (stat(path.c_str(), &found) != 0 || found.st_uid != geteuid()) {
    error = path + " belongs to somebody else";
    return false;
  }
  const mode_t rights = found.st_mode & 07777;
  return change_mode(path, rights & ~static_cast<mode_t>(S_IWGRP | S_IWOTH), error);
}

bool make_executable(const std::string& path, std::string& error) {
  return change_mode(path, program_mode, error);
}

}  // namespace platform
