#include "transport/base64.h"

#include <array>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t foreign = 0xFF;

// The six bits of each byte of the alphabet; `foreign` for all others.
constexpr std::array<std::uint8_t, 256> make_values() {
  std::array<std::uint8_t, 256> values{};
  for (auto& value : values) value = foreign;
  for (std::uint8_t i = 0; i < 64; ++i) values[static_cast<unsigned char>(alphabet[i])] = i;
  return values;
}
constexpr std::array<std::uint8_t, 256> values = make_values();

std::uint8_t value_of(char c) { return values[static_cast<unsigned char>(c)]; }

// Up to four characters' bits, the first one highest.
struct group {
  std::uint32_t bits = 0;
  int characters = 0;

  int bytes() const { return characters * 6 / 8; }
};

group take_group(const char*& at, const char* end) {
  group g;
  // A run of four alphabet characters is the rule; `foreign` shows in the top bits of the union.
  if (end - at >= 4) {
    const std::uint8_t a = value_of(at[0]), b = value_of(at[1]);
    const std::uint8_t c = value_of(at[2]), d = value_of(at[3]);
    if ((a | b | c | d) < 64) {
      at += 4;
      return {static_cast<std::uint32_t>(a << 18 | b << 12 | c << 6 | d), 4};
    }
  }
  while (at != end && g.characters < 4) {
    const std::uint8_t value = value_of(*at++);
    if (value == foreign) continue;
    g.bits = g.bits << 6 | value;
    ++g.characters;
  }
  g.bits <<= 6 * (4 - g.characters);
  return g;
}

char* put_character(char* out, std::uint32_t bits) {
  *out = alphabet[bits & 63];
  return out + 1;
}

std::uint32_t byte_at(const char* at) { return static_cast<unsigned char>(*at); }

}  // namespace

std::int32_t base64_encoded_length(std::int32_t n) {
  const std::int32_t unpadded = static_cast<std::int32_t>(std::int64_t{n} * 4 / 3);
  return (unpadded + 3) / 4 * 4;
}

int base64_encode(const char* source, std::int32_t n, char* destination, std::int32_t* length) {
  if (destination == nullptr || length == nullptr) return -1;
  if (n < 0 || n > max_base64_input || *length < base64_encoded_length(n)) return -1;

  char* out = destination;
  const char* const whole_end = source + n - n % 3;
  const char* at = source;
  for (; at != whole_end; at += 3) {
    const std::uint32_t bits = byte_at(at) << 16 | byte_at(at + 1) << 8 | byte_at(at + 2);
    for (int shift = 18; shift >= 0; shift -= 6) out = put_character(out, bits >> shift);
  }
  if (const int rest = n % 3; rest > 0) {
    const std::uint32_t bits = byte_at(at) << 16 | (rest == 2 ? byte_at(at + 1) << 8 : 0);
    out = put_character(out, bits >> 18);
    out = put_character(out, bits >> 12);
    if (rest == 2) out = put_character(out, bits >> 6);
    for (int i = rest; i < 3; ++i) *out++ = '=';
  }
  *length = static_cast<std::int32_t>(out - destination);
  return 0;
}

int base64_decode(const char* source, char* destination, std::int32_t* length,
                  const char* source_end) {
  if (length == nullptr) return -1;
  const std::int32_t capacity = *length;
  std::int64_t written = 0;
  bool overflow = destination == nullptr;
  while (source != source_end && *source != '\0') {
    const group g = take_group(source, source_end);
    const int bytes = g.bytes();
    overflow = overflow || written + bytes > capacity;
    if (!overflow) {
      for (int i = 0; i < bytes; ++i) {
        destination[written + i] = static_cast<char>(g.bits >> (16 - 8 * i));
      }
    }
    written += bytes;
  }
  *length = static_cast<std::int32_t>(written);
  return overflow ? -1 : 0;
}
