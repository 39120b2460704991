#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "platform/linux/descriptor.h"
#include "platform/platform.h"

namespace platform {
namespace {

// File names here are bytes, which need not be UTF-8. One unit carries one byte, so that every path
// comes back exactly.
wide_string wide_path(std::string_view bytes) {
  wide_string path;
  for (const char byte : bytes) path.push_back(static_cast<unsigned char>(byte));
  return path;
}

std::string narrow_path(const wide_string& path) {
  std::string bytes;
  for (const wide_char unit : path) bytes.push_back(static_cast<char>(unit));
  return bytes;
}

bool has_all_segments(int fd, std::uint64_t file_size) {
  ElfW(Ehdr) header = {};
  if (pread(fd, &header, sizeof header, 0) != sizeof header) return false;
  for (std::size_t i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment = {};
    const auto place = static_cast<off_t>(header.e_phoff + i * sizeof segment);
    if (pread(fd, &segment, sizeof segment, place) != sizeof segment) return false;
    const bool whole =
        segment.p_offset <= file_size && segment.p_filesz <= file_size - segment.p_offset;
    if (segment.p_type == PT_LOAD && !whole) return false;
  }
  return true;
}

// The loader would wait for ever at a pipe, and would crash on a file whose copying was cut short.
// It checks everything else itself.
bool is_whole_file(const char* path) {
  const descriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat found = {};
  return file.valid() && fstat(file.get(), &found) == 0 && S_ISREG(found.st_mode) &&
         has_all_segments(file.get(), static_cast<std::uint64_t>(found.st_size));
}

}  // namespace

// The executable is the only module whose folder is ever asked for; the handle just stands for it.
module_handle own_module() {
  static char executable;
  return &executable;
}

wide_string library_path_beside(module_handle, wide_view name) {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || length == sizeof path) return {};  // none, or perhaps cut
  const std::string_view executable(path, static_cast<std::size_t>(length));
  const std::string_view folder = executable.substr(0, executable.rfind('/') + 1);
  return wide_path(folder).append(name).append(u".so");
}

void restrict_library_search() {}

module_handle load_library(const wide_string& path) {
  // The loader expands words after a '$', which could lead to another folder.
  if (path.empty() || path.front() != u'/' || path.find(u'$') != path.npos) return nullptr;
  const std::string file = narrow_path(path);
  if (!is_whole_file(file.c_str())) return nullptr;
  return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* library_symbol(module_handle module, const char* name) { return dlsym(module, name); }

void unload_library(module_handle module) { dlclose(module); }

}  // namespace platform
