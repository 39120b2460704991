// Preloaded into a host: makes one of the program's own calls of malloc fail, the one that the
// environment names by number. All later calls fail too, unless a '+' follows the number.
#include <sys/auxv.h>

#include <cstdint>
#include <cstdlib>

extern "C" void* __libc_malloc(std::size_t size);

// Visible even if everything else is hidden, or the host would never call it.
extern "C" [[gnu::visibility("default")]] void* malloc(std::size_t size) {
  // The program is loaded far from all libraries.
  constexpr std::uintptr_t reach = std::uintptr_t{64} * 1024 * 1024;
  static const char* const wanted = std::getenv("CFHOST_FAILING_ALLOCATION");
  static long calls = 0;
  const auto caller = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
  if (wanted != nullptr && caller - getauxval(AT_PHDR) < reach) {
    char* mark = nullptr;
    const long first = std::strtol(wanted, &mark, 10);
    ++calls;
    if (calls == first || (calls > first && *mark != '+')) return nullptr;
  }
  return __libc_malloc(size);
}
