#include "platform/exported.h"

// Defined in another library.
extern "C" void* NotTheApi();

extern "C" PLATFORM_EXPORTED void* Api() { return NotTheApi(); }
