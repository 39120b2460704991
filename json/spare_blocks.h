// Blocks of one size that were given back, kept for whoever asks next. Pages follow each other and
// ask for the same again, while the system's allocator keeps just a few of a size at hand.
//
// Each thread has its own.
#pragma once

#include <cstddef>
#include <new>

// The address sanitizer is to see each use of a block that was given back.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool keeps_blocks = false;
#elif !defined(__has_feature)
inline constexpr bool keeps_blocks = true;
#elif __has_feature(address_sanitizer)
inline constexpr bool keeps_blocks = false;
#else
inline constexpr bool keeps_blocks = true;
#endif

template <std::size_t Capacity>
class spare_blocks {
 public:
  constexpr spare_blocks() = default;
  ~spare_blocks() {
    while (count_ > 0) ::operator delete(take());
  }
  spare_blocks(const spare_blocks&) = delete;
  spare_blocks& operator=(const spare_blocks&) = delete;

  // A block that was kept, or null. It is the caller's now.
  void* take() { return count_ > 0 ? blocks_[--count_] : nullptr; }

  // Takes a block of operator new over. False if there is no place for it.
  bool keep(void* block) {
    if (!keeps_blocks || count_ == Capacity) return false;
    blocks_[count_++] = block;
    return true;
  }

 private:
  std::size_t count_ = 0;
  void* blocks_[Capacity] = {};
};
