// Marks what a library exports; everything else stays hidden.
#pragma once

#ifdef _WIN32
#define PLATFORM_EXPORTED [[gnu::dllexport]]
#else
#define PLATFORM_EXPORTED [[gnu::visibility("default")]]
#endif
