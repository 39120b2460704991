// Blocks of one size that were given back, kept for whoever asks next. Pages follow each other and
// ask for the same again, while the system's allocator keeps just a few of a size at hand.
//
// Any thread may call at any time; one that finds another at it goes without. Not one for each
// thread, since what a thread has of its own isn't safe to use at its end on every system.
#pragma once

#include <atomic>
#include <cstddef>

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
  // A block that was kept, or null. It is the caller's now.
  void* take() {
    if (busy_.test_and_set(std::memory_order_acquire)) return nullptr;
    void* const block = count_ > 0 ? blocks_[--count_] : nullptr;
    busy_.clear(std::memory_order_release);
    return block;
  }

  // Takes a block over. False if there is no place for it.
  bool keep(void* block) {
    if (!keeps_blocks || busy_.test_and_set(std::memory_order_acquire)) return false;
    const bool fits = count_ < Capacity;
    if (fits) blocks_[count_++] = block;
    busy_.clear(std::memory_order_release);
    return fits;
  }

 private:
  std::atomic_flag busy_;
  std::size_t count_ = 0;
  void* blocks_[Capacity] = {};
};
