#include <windows.h>

#include <thread>

#include "tests/end_to_end/ending_threads.h"

// Nothing cancels a thread here but its sudden end.
void work_on_cancelled_thread(const std::function<void()>& work) { std::thread(work).join(); }

void exit_thread() { ExitThread(0); }
