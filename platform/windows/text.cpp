#include <windows.h>

#include <climits>

#include "platform/platform.h"
#include "platform/windows/native.h"

namespace platform {
namespace {

using byte = unsigned char;

constexpr std::size_t coded_surrogate_size = 3;

// A surrogate coded in three bytes. The system treats it as malformed; here it isn't.
bool is_coded_surrogate(const char* text, std::size_t length) {
  const auto at = [text](std::size_t i) { return static_cast<byte>(text[i]); };
  return length >= coded_surrogate_size && at(0) == 0xED && at(1) >= 0xA0 && at(1) <= 0xBF &&
         (at(2) & 0xC0) == 0x80;
}

wide_char decode_surrogate(const char* text) {
  return static_cast<wide_char>(0xD000 | (text[1] & 0x3F) << 6 | (text[2] & 0x3F));
}

// Length of the part before the first coded surrogate. The lead byte of one is never part of
// another sequence, so no sequence is split.
std::size_t length_before_surrogate(const char* text, std::size_t length) {
  std::size_t at = 0;
  while (at < length && !is_coded_surrogate(text + at, length - at)) ++at;
  return at;
}

// Empty for a non-empty text only if the system refuses it.
std::size_t convert_part(const char* text, std::size_t length, wide_char* out) {
  const int size = static_cast<int>(length);
  return static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text, size, native(out), size));
}

}  // namespace

static_assert(CP_UTF8 == 65001);

std::size_t utf8_to_utf16(const char* text, std::uint32_t length, wide_char* out) {
  if (length > INT_MAX) return 0;
  const wide_char* const start = out;
  const char* const end = text + length;
  while (text < end) {
    const auto left = static_cast<std::size_t>(end - text);
    if (is_coded_surrogate(text, left)) {
      *out++ = decode_surrogate(text);
      text += coded_surrogate_size;
      continue;
    }
    const std::size_t part = length_before_surrogate(text, left);
    const std::size_t made = convert_part(text, part, out);
    if (made == 0) return 0;
    text += part;
    out += made;
  }
  return static_cast<std::size_t>(out - start);
}

std::size_t utf16_to_utf8(const wide_char* text, std::uint32_t length, char* out) {
  if (length == 0 || length > INT_MAX / 3) return 0;
  const int size = static_cast<int>(length);
  return static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, native(text), size, out, 3 * size, nullptr, nullptr));
}

}  // namespace platform
