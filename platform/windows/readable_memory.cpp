#include "platform/readable_memory.h"

#include <windows.h>

namespace platform {

// Goes region by region: what is reserved or guarded can't be read.
bool is_readable(const void* memory, std::size_t size) {
  constexpr DWORD closed = PAGE_NOACCESS | PAGE_GUARD;
  auto at = reinterpret_cast<ULONG_PTR>(memory);
  const ULONG_PTR end = at + size;
  while (at < end) {
    MEMORY_BASIC_INFORMATION region = {};
    if (VirtualQuery(reinterpret_cast<const void*>(at), &region, sizeof region) == 0) return false;
    if (region.State != MEM_COMMIT || (region.Protect & closed) != 0) return false;
    at = reinterpret_cast<ULONG_PTR>(region.BaseAddress) + region.RegionSize;
  }
  return end >= reinterpret_cast<ULONG_PTR>(memory);
}

}  // namespace platform
