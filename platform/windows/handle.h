// Owns a system handle.
#pragma once

#include <windows.h>

#include <utility>

namespace platform {

class handle {
 public:
  handle() = default;

  // Takes the result of a system call, even of one that failed.
  explicit handle(HANDLE value) : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
  handle(handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  handle& operator=(handle&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~handle() { close(); }

  bool valid() const { return value_ != nullptr; }
  HANDLE get() const { return value_; }
  void close() {
    if (value_ != nullptr) CloseHandle(std::exchange(value_, nullptr));
  }

 private:
  HANDLE value_ = nullptr;
};

}  // namespace platform
