// Owns a handle of the system's.
#pragma once

#include <windows.h>

#include <utility>

namespace platform {

class handle {
 public:
  handle() = default;

  // Takes what a call of the system gave, also when that failed.
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
