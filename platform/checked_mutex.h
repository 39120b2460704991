// A mutex whose use clang checks: what it guards is said where it is declared, and a build by clang
// fails where that is touched without the lock. The standard one isn't marked for this.
#pragma once

#include <mutex>

#ifdef __clang__
#define CHECKED_BY_CLANG(attribute) __attribute__((attribute))
#else
#define CHECKED_BY_CLANG(attribute)
#endif

// Behind a member: touched by holders of the mutex alone.
#define GUARDED_BY(mutex) CHECKED_BY_CLANG(guarded_by(mutex))
// Behind a function or the parameters of a lambda: called by holders of the mutex alone.
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

  // For the waits of a condition variable, which hold the mutex again when they return.
  std::unique_lock<std::mutex>& native() { return lock_; }

 private:
  std::unique_lock<std::mutex> lock_;
};
