// Owns a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

class descriptor {
 public:
  descriptor() = default;

  // Takes what a call of the system gave, also when that failed.
  explicit descriptor(int fd) : fd_(fd) {}
  descriptor(descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  descriptor& operator=(descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~descriptor() { close(); }

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }

  // False if the system reports that what was written before is lost.
  bool close() { return fd_ < 0 || ::close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_ = -1;
};

}  // namespace platform
