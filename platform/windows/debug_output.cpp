#include <windows.h>

#include "platform/platform.h"
#include "platform/windows/native.h"

namespace platform {

void write_debug_line(const char* line) { OutputDebugStringA(line); }
void write_debug_line(const wide_char* line) { OutputDebugStringW(native(line)); }

bool debugger_attached() { return IsDebuggerPresent() != 0; }

std::int32_t current_thread_id() { return static_cast<std::int32_t>(GetCurrentThreadId()); }

}  // namespace platform
