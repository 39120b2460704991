#include <windows.h>

#include <thread>

#include "tests/end_to_end/ending_threads.h"

// Threads can't be cancelled here, so the thread just runs.
void work_on_cancelled_thread(const std::function<void()>& work) { std::thread(work).join(); }

void exit_thread() { ExitThread(0); }
