#include "platform/library_threads.h"

#include <windows.h>

namespace platform {

// A library is unloaded under the loader's lock, which a thread needs in order to end: each would
// wait for the other.
bool prepare_for_threads() {
  HMODULE module = nullptr;
  const auto* const own_address = reinterpret_cast<const wchar_t*>(&prepare_for_threads);
  return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                            own_address, &module) != 0;
}

}  // namespace platform
