// Marks what a library shows to those who load it; everything else is its own.
#pragma once

#ifdef _WIN32
#define PLATFORM_EXPORTED [[gnu::dllexport]]
#else
#define PLATFORM_EXPORTED [[gnu::visibility("default")]]
#endif
