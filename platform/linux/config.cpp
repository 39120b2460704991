#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "platform/linux/descriptor.h"
#include "platform/platform.h"
#include "platform/portable/ini.h"

namespace platform {
namespace {

// Far more than one key needs. A larger file counts as missing.
constexpr off_t max_config_file_size = off_t{64} * 1024;

// Names of folders, files, sections and keys are ASCII constants of the host.
std::string narrow(wide_view text) { return {text.begin(), text.end()}; }

// The text of a small regular text file; empty for anything else.
std::string read_config_file(const std::string& path) {
  // A pipe in the file's place must not block the start, hence O_NONBLOCK.
  const descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file.valid() || fstat(file.get(), &status) != 0) return {};
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
  const auto value = find_ini_value(text, narrow(key.section), narrow(key.key));
  if (!value || value->empty()) return 0;

  wide_string wide(value->size(), 0);
  wide.resize(utf8_to_utf16(value->data(), static_cast<std::uint32_t>(value->size()), wide.data()));
  const std::size_t delivered = wide.copy(out, capacity - 1);
  out[delivered] = 0;
  return delivered;
}

}  // namespace platform
