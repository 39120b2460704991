// Threads that end in the middle of what they do, the way each system has it.
#pragma once

#include <functional>

// Calls `work` on a thread of its own that is to be cancelled as soon as it can be.
void work_on_cancelled_thread(const std::function<void()>& work);

[[noreturn]] void exit_thread();
