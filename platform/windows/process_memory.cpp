#include "platform/process_memory.h"

#include <windows.h>
// To be included after windows.h.
#include <psapi.h>
#include <tlhelp32.h>

#include "platform/windows/handle.h"

namespace platform {
namespace {

HANDLE opened(std::int64_t process_id) {
  return OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE,
                     static_cast<DWORD>(process_id));
}

// All zero for a process that can't be examined.
PROCESS_MEMORY_COUNTERS counters_of(std::int64_t process_id) {
  const handle process(opened(process_id));
  PROCESS_MEMORY_COUNTERS counters = {};
  if (process.valid()) K32GetProcessMemoryInfo(process.get(), &counters, sizeof counters);
  return counters;
}

}  // namespace

std::size_t resident_memory(std::int64_t process_id) {
  return counters_of(process_id).WorkingSetSize;
}

std::size_t peak_memory(std::int64_t process_id) {
  return counters_of(process_id).PeakWorkingSetSize;
}

std::size_t open_files(std::int64_t process_id) {
  const handle process(opened(process_id));
  DWORD count = 0;
  return process.valid() && GetProcessHandleCount(process.get(), &count) != 0 ? count : 0;
}

std::size_t running_threads(std::int64_t process_id) {
  const handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  std::size_t count = 0;
  for (BOOL more = Thread32First(snapshot.get(), &entry); more != 0;
       more = Thread32Next(snapshot.get(), &entry)) {
    if (entry.th32OwnerProcessID == static_cast<DWORD>(process_id)) ++count;
  }
  return count;
}

}  // namespace platform
