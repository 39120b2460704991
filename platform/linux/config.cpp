#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <string>

#include "platform/linux/profile.h"
#include "platform/platform.h"

namespace platform {
namespace {

// A configuration of one key has no business being larger; what is, counts as missing.
constexpr off_t max_config_file_size = off_t{64} * 1024;

// Names of folders, files, sections and keys are ASCII constants of the host.
std::string narrow(wide_view text) { return {text.begin(), text.end()}; }

class file_descriptor {
 public:
  // A pipe in the file's place must not block the start, hence O_NONBLOCK.
  explicit file_descriptor(const std::string& path)
      : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~file_descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  file_descriptor(const file_descriptor&) = delete;
  file_descriptor& operator=(const file_descriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

// The text of a small regular text file; empty for anything else.
std::string read_config_file(const std::string& path) {
  const file_descriptor file(path);
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) return {};
  if (!S_ISREG(status.st_mode) || status.st_size > max_config_file_size) return {};

  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t got = 0;
  while (got < text.size()) {
    const ssize_t n = read(file.get(), text.data() + got, text.size() - got);
    if (n <= 0) return {};
    got += static_cast<std::size_t>(n);
  }
  return text.find('\0') == std::string::npos ? text : std::string();
}

}  // namespace

std::size_t config_value(const config_key& key, wide_char* out, std::size_t capacity) {
  out[0] = 0;
  const std::string text =
      read_config_file(CFHOST_SYSCONFDIR "/" + narrow(key.folder) + "/" + narrow(key.file));
  const auto value = find_profile_value(text, narrow(key.section), narrow(key.key));
  if (!value || value->empty()) return 0;

  wide_string wide(value->size(), 0);
  wide.resize(utf8_to_utf16(value->data(), static_cast<std::uint32_t>(value->size()), wide.data()));
  const std::size_t delivered = wide.copy(out, capacity - 1);
  out[delivered] = 0;
  return delivered;
}

std::int32_t leading_integer(const wide_char* text) {
  while (*text == u' ' || (*text >= 9 && *text <= 13)) ++text;
  const bool negative = *text == u'-';
  if (negative || *text == u'+') ++text;

  using limits = std::numeric_limits<std::int32_t>;
  std::int64_t value = 0;
  for (; *text >= u'0' && *text <= u'9'; ++text) {
    value = std::min<std::int64_t>(value * 10 + (*text - u'0'), std::int64_t{limits::max()} + 1);
  }
  if (negative) value = -value;
  return static_cast<std::int32_t>(std::min<std::int64_t>(value, limits::max()));
}

}  // namespace platform
