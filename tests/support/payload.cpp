#include "tests/support/payload.h"

std::string wide_bytes(wide_view text) {
  std::string bytes(2 * text.size() + 2, '\0');
  std::memcpy(bytes.data(), text.data(), 2 * text.size());
  return bytes;
}

std::string word(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return bytes;
}

std::string frame(std::string_view payload) {
  return word(static_cast<std::uint32_t>(payload.size())).append(payload);
}

bool memory_sink::write_bytes(const void* data, std::uint64_t size) {
  if (calls++ >= refused) return false;
  bytes.append(static_cast<const char*>(data), size);
  return true;
}
