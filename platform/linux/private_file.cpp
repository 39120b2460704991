#include "platform/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/linux/descriptor.h"
#include "platform/linux/failure_text.h"

namespace platform {
namespace {

constexpr mode_t owner_only = 0600;

class linux_file final : public private_file {
 public:
  linux_file(descriptor file, const std::string& path) : file_(std::move(file)), path_(path) {}

  bool append(std::string_view text, std::string& error) override {
    while (!text.empty()) {
      const ssize_t count = write(file_.get(), text.data(), text.size());
      if (count >= 0) {
        text.remove_prefix(static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        error = failure_text("write", path_);
        return false;
      }
    }
    return true;
  }

 private:
  const descriptor file_;
  const std::string path_;
};

}  // namespace

std::unique_ptr<private_file> private_file::create(const std::string& path, bool& exists,
                                                   std::string& error) {
  // Reaching the limit on file sizes is an error like a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  descriptor file(
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, owner_only));
  exists = !file.valid() && errno == EEXIST;
  if (!file.valid()) {
    error = failure_text("make", path);
    return nullptr;
  }
  return std::make_unique<linux_file>(std::move(file), path);
}

}  // namespace platform
