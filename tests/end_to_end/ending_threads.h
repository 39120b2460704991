// Threads that end in the middle of their work, in the way that each system has.
#pragma once

#include <functional>

// Calls `work` on a thread of its own, which is cancelled as soon as it can be.
void work_on_cancelled_thread(const std::function<void()>& work);

[[noreturn]] void exit_thread();
