#include "platform/exported.h"

// A library that isn't one of ours: it has an export, but under another name.
extern "C" PLATFORM_EXPORTED void* NotTheApi() { return nullptr; }
