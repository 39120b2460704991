#include "bench/peers/plain_codecs.h"

#include <array>
#include <cstdint>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> values = [] {
  std::array<std::int8_t, 256> table{};
  table.fill(-1);
  for (std::int8_t i = 0; i < 64; ++i) table[static_cast<unsigned char>(alphabet[i])] = i;
  return table;
}();

void put_group(std::uint32_t group, char* out) {
  for (int shift = 18; shift >= 0; shift -= 6) *out++ = alphabet[group >> shift & 63];
}

bool continues(unsigned char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

std::size_t plain_base64_encode(const unsigned char* in, std::size_t size, char* out) {
  char* const start = out;
  for (; size >= 3; size -= 3, in += 3, out += 4) {
    put_group(static_cast<std::uint32_t>(in[0] << 16 | in[1] << 8 | in[2]), out);
  }
  if (size > 0) {
    put_group(static_cast<std::uint32_t>(in[0] << 16 | (size > 1 ? in[1] << 8 : 0)), out);
    if (size == 1) out[2] = '=';
    out[3] = '=';
    out += 4;
  }
  return static_cast<std::size_t>(out - start);
}

std::size_t plain_base64_decode(const char* in, std::size_t size, char* out) {
  char* const start = out;
  std::uint32_t group = 0;
  int count = 0;
  for (const char* const end = in + size; in < end; ++in) {
    const int value = values[static_cast<unsigned char>(*in)];
    if (value < 0) continue;
    group = group << 6 | static_cast<std::uint32_t>(value);
    if (++count < 4) continue;
    *out++ = static_cast<char>(group >> 16);
    *out++ = static_cast<char>(group >> 8);
    *out++ = static_cast<char>(group);
    count = 0;
  }
  if (count == 3) *out++ = static_cast<char>(group >> 10);
  if (count >= 2) *out++ = static_cast<char>(count == 3 ? group >> 2 : group >> 4);
  return static_cast<std::size_t>(out - start);
}

std::size_t plain_utf8_to_utf16(const char* text, std::size_t size, char16_t* out) {
  char16_t* const start = out;
  const auto* in = reinterpret_cast<const unsigned char*>(text);
  for (const auto* const end = in + size; in < end;) {
    const std::uint32_t c = *in;
    if (c < 0x80) {
      *out++ = static_cast<char16_t>(c);
      in += 1;
    } else if (c >= 0xC2 && c < 0xE0 && end - in > 1 && continues(in[1])) {
      *out++ = static_cast<char16_t>((c & 31) << 6 | (in[1] & 63));
      in += 2;
    } else if (c >= 0xE0 && c < 0xF0 && end - in > 2 && continues(in[1]) && continues(in[2])) {
      *out++ = static_cast<char16_t>((c & 15) << 12 | (in[1] & 63) << 6 | (in[2] & 63));
      in += 3;
    } else if (c >= 0xF0 && c < 0xF5 && end - in > 3) {
      const std::uint32_t v =
          ((c & 7) << 18 | (in[1] & 63) << 12 | (in[2] & 63) << 6 | (in[3] & 63)) - 0x10000;
      *out++ = static_cast<char16_t>(0xD800 + (v >> 10));
      *out++ = static_cast<char16_t>(0xDC00 + (v & 1023));
      in += 4;
    } else {
      *out++ = 0xFFFD;
      in += 1;
    }
  }
  return static_cast<std::size_t>(out - start);
}

std::size_t plain_utf16_to_utf8(const char16_t* in, std::size_t size, char* out) {
  char* const start = out;
  const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
  for (const char16_t* const end = in + size; in < end;) {
    std::uint32_t c = *in++;
    if (c < 0x80) {
      put(c);
    } else if (c < 0x800) {
      put(0xC0 | c >> 6), put(0x80 | (c & 63));
    } else if ((c & 0xFC00) == 0xD800 && in < end && (*in & 0xFC00) == 0xDC00) {
      c = 0x10000 + ((c & 1023) << 10 | (*in++ & 1023));
      put(0xF0 | c >> 18), put(0x80 | (c >> 12 & 63));
      put(0x80 | (c >> 6 & 63)), put(0x80 | (c & 63));
    } else {
      if ((c & 0xF800) == 0xD800) c = 0xFFFD;
      put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 63)), put(0x80 | (c & 63));
    }
  }
  return static_cast<std::size_t>(out - start);
}
