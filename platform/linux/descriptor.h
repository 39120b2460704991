// Owns a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

class descriptor {
 public:
  descriptor() = default;

  // Takes the result of a system call, even of one that failed.
  explicit descriptor(int fd) : fd_(fd) {}
  descriptor(descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  descriptor& operator=(descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~descriptor() { close(); }

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }

  // False if the system reports that earlier writes were lost.
  bool close() { return fd_ < 0 || ::close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_ = -1;
};

}  // namespace platform
