#include "platform/exported.h"

// A library that needs another one, which has this function.
extern "C" void* NotTheApi();

extern "C" PLATFORM_EXPORTED void* Api() { return NotTheApi(); }
