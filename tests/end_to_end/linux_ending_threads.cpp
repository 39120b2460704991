#include <pthread.h>

#include "tests/end_to_end/ending_threads.h"

namespace {

void* work_cancelled(void* work) {
  pthread_cancel(pthread_self());
  (*static_cast<const std::function<void()>*>(work))();
  pthread_testcancel();
  return nullptr;
}

}  // namespace

void work_on_cancelled_thread(const std::function<void()>& work) {
  pthread_t thread = {};
  void* const copy = const_cast<std::function<void()>*>(&work);
  if (pthread_create(&thread, nullptr, work_cancelled, copy) == 0) pthread_join(thread, nullptr);
}

void exit_thread() { pthread_exit(nullptr); }
