#include "tests/fuzz/fuzzing.h"

#include <cstdio>
#include <cstdlib>

void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "Broken promise: %s\n", promise);
  std::abort();
}

std::uint8_t take_byte(std::string_view& input) {
  if (input.empty()) return 0;
  const auto byte = static_cast<std::uint8_t>(input.front());
  input.remove_prefix(1);
  return byte;
}
