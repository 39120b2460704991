#include "agent/text_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct file_closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

file_state read_file(const std::string& path, std::size_t limit, std::string& text,
                     std::string& problem) {
  const std::unique_ptr<std::FILE, file_closer> file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr && errno == ENOENT) return file_state::absent;
  if (file == nullptr) {
    problem = std::strerror(errno);
    return file_state::unreadable;
  }
  // One byte more than allowed, to see whether it is there.
  text.resize(limit + 1);
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  if (std::ferror(file.get()) != 0) {
    problem = std::strerror(errno);
  } else if (text.size() > limit) {
    problem = "larger than " + std::to_string(limit) + " bytes";
  } else {
    return file_state::present;
  }
  return file_state::unreadable;
}
