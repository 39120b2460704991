#include "platform/process_memory.h"

#include <windows.h>
// The functions on processes build on that one.
#include <psapi.h>

#include "platform/windows/handle.h"

namespace platform {

std::size_t resident_memory(std::int64_t process_id) {
  const handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE,
                                   static_cast<DWORD>(process_id)));
  PROCESS_MEMORY_COUNTERS counters = {};
  const bool told =
      process.valid() && K32GetProcessMemoryInfo(process.get(), &counters, sizeof counters) != 0;
  return told ? counters.WorkingSetSize : 0;
}

}  // namespace platform
