#include "platform/exported.h"

// Not a client library: it has an export, but under another name.
extern "C" PLATFORM_EXPORTED void* NotTheApi() { return nullptr; }
