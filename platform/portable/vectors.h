// Vector instructions by Intel's names, for every processor: where they aren't its own, SIMDe puts
// what it has in their place. Code of sixteen bytes at a time serves all; what the baseline of an
// architecture lacks is chosen at start.
//
// CFHOST_VECTORS is the widest vector, in bytes, that a build may use: 32, 16, or 0 for plain code.
#pragma once

#if !defined(CFHOST_VECTORS)
#define CFHOST_VECTORS 32
#endif

#if CFHOST_VECTORS >= 16 && defined(__x86_64__)
#include <immintrin.h>
#define CFHOST_HAS_VECTORS 1
#elif CFHOST_VECTORS >= 16 && defined(__aarch64__)
#define SIMDE_ENABLE_NATIVE_ALIASES
#include <simde/x86/ssse3.h>
#define CFHOST_HAS_VECTORS 1
#else
#define CFHOST_HAS_VECTORS 0
#endif

// Vectors of 32 bytes are two of 16 elsewhere, and gain nothing there.
#if CFHOST_VECTORS >= 32 && defined(__x86_64__)
#define CFHOST_HAS_AVX2 1
#else
#define CFHOST_HAS_AVX2 0
#endif

// In front of functions that only run where `vector_width` allows it.
#if defined(__x86_64__)
#define CFHOST_SSSE3 [[gnu::target("ssse3")]]
#define CFHOST_AVX2 [[gnu::target("avx2")]]
#else
#define CFHOST_SSSE3
#define CFHOST_AVX2
#endif

// The widest vectors that the processor at hand shuffles the bytes of: 32, 16, or 0 for none.
inline int vector_width() {
#if CFHOST_HAS_VECTORS && defined(__x86_64__)
  if (CFHOST_HAS_AVX2 && __builtin_cpu_supports("avx2")) return 32;
  return __builtin_cpu_supports("ssse3") ? 16 : 0;
#else
  return CFHOST_HAS_VECTORS ? 16 : 0;
#endif
}
