// A mutex whose use Clang checks. Declarations say what it guards, and a Clang build fails where
// that is touched without the lock. std::mutex isn't annotated for this.
#pragma once

#include <mutex>

#ifdef __clang__
#define CHECKED_BY_CLANG(attribute) __attribute__((attribute))
#else
#define CHECKED_BY_CLANG(attribute)
#endif

// On a member: only holders of the mutex may touch it.
#define GUARDED_BY(mutex) CHECKED_BY_CLANG(guarded_by(mutex))
// On a function or behind a lambda's parameters: only holders of the mutex may call it.
#define REQUIRES(mutex) CHECKED_BY_CLANG(requires_capability(mutex))

class CHECKED_BY_CLANG(capability("mutex")) checked_mutex {
 private:
  friend class checked_lock;

  std::mutex mutex_;
};

// Holds a mutex for its own lifetime.
class CHECKED_BY_CLANG(scoped_lockable) checked_lock {
 public:
  explicit checked_lock(checked_mutex& mutex) CHECKED_BY_CLANG(acquire_capability(mutex))
      : lock_(mutex.mutex_) {}
  // NOLINTNEXTLINE(modernize-use-equals-default): the attribute wants a body
  ~checked_lock() CHECKED_BY_CLANG(release_capability()) {}
  checked_lock(const checked_lock&) = delete;
  checked_lock& operator=(const checked_lock&) = delete;

  // For waiting on a condition variable. When the wait returns, the mutex is held again.
  std::unique_lock<std::mutex>& native() { return lock_; }

 private:
  std::unique_lock<std::mutex> lock_;
};
