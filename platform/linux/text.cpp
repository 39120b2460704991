#include <cstring>

#include "platform/platform.h"

namespace platform {
namespace {

using byte = unsigned char;

constexpr wide_char replacement = 0xFFFD;

bool is_continuation(byte b) { return (b & 0xC0) == 0x80; }
bool is_high_surrogate(wide_char u) { return (u & 0xFC00) == 0xD800; }
bool is_low_surrogate(wide_char u) { return (u & 0xFC00) == 0xDC00; }

// What the lead byte of a sequence demands: how many bytes follow it, and the range of the first of
// them (Unicode table 3-7). The range shuts out overlong forms and values above U+10FFFF; the
// surrogates, which the table shuts out as well, are let in.
struct lead_rule {
  int following;
  byte low, high;
};

lead_rule rule_of(byte lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

// A three-byte surrogate that isn't whole is no exception: then ED and A0..BF are ill-formed apart.
bool is_cut_surrogate(const byte* in, const byte* end) {
  return in[0] == 0xED && end - in > 1 && in[1] >= 0xA0 &&
         (end - in < 3 || !is_continuation(in[2]));
}

// Converts the sequence at `in`, which doesn't start with an ASCII byte, or replaces its maximal
// subpart. Steps both positions on.
void convert_sequence(const byte*& in, const byte* end, wide_char*& out) {
  const byte lead = *in;
  const lead_rule rule = rule_of(lead);
  int taken = 1;
  if (rule.following > 0 && end - in > 1 && in[1] >= rule.low && in[1] <= rule.high &&
      !is_cut_surrogate(in, end)) {
    taken = 2;
    while (taken <= rule.following && end - in > taken && is_continuation(in[taken])) ++taken;
  }
  if (rule.following == 0 || taken <= rule.following) {
    *out++ = replacement;
  } else if (rule.following == 1) {
    *out++ = static_cast<wide_char>((lead & 0x1F) << 6 | (in[1] & 0x3F));
  } else if (rule.following == 2) {
    *out++ = static_cast<wide_char>((lead & 0x0F) << 12 | (in[1] & 0x3F) << 6 | (in[2] & 0x3F));
  } else {
    const int above_bmp =
        ((lead & 0x07) << 18 | (in[1] & 0x3F) << 12 | (in[2] & 0x3F) << 6 | (in[3] & 0x3F)) -
        0x10000;
    *out++ = static_cast<wide_char>(0xD800 + (above_bmp >> 10));
    *out++ = static_cast<wide_char>(0xDC00 + (above_bmp & 0x3FF));
  }
  in += taken;
}

// Eight ASCII bytes at a time: most texts of a page are nothing else.
void convert_ascii(const byte*& in, const byte* end, wide_char*& out) {
  constexpr std::uint64_t high_bits = 0x8080808080808080;
  std::uint64_t word = 0;
  while (end - in >= 8 && (std::memcpy(&word, in, 8), (word & high_bits) == 0)) {
    for (int i = 0; i < 8; ++i) out[i] = in[i];
    in += 8;
    out += 8;
  }
  while (in < end && *in < 0x80) *out++ = *in++;
}

void put_code_point(char32_t c, char*& out) {
  const auto put = [&out](char32_t b) { *out++ = static_cast<char>(b); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

void convert_ascii(const wide_char*& in, const wide_char* end, char*& out) {
  constexpr std::uint64_t high_bits = 0xFF80FF80FF80FF80;
  std::uint64_t word = 0;
  while (end - in >= 4 && (std::memcpy(&word, in, 8), (word & high_bits) == 0)) {
    for (int i = 0; i < 4; ++i) out[i] = static_cast<char>(in[i]);
    in += 4;
    out += 4;
  }
  while (in < end && *in < 0x80) *out++ = static_cast<char>(*in++);
}

char32_t take_code_point(const wide_char*& in, const wide_char* end) {
  const wide_char unit = *in++;
  if (is_high_surrogate(unit) && in < end && is_low_surrogate(*in)) {
    return 0x10000 + (static_cast<char32_t>(unit & 0x3FF) << 10) + (*in++ & 0x3FFu);
  }
  return is_high_surrogate(unit) || is_low_surrogate(unit) ? replacement : unit;
}

}  // namespace

std::size_t utf8_to_utf16(const char* text, std::uint32_t length, wide_char* out) {
  const auto* in = reinterpret_cast<const byte*>(text);
  const byte* const end = in + length;
  const wide_char* const start = out;
  while (convert_ascii(in, end, out), in < end) convert_sequence(in, end, out);
  return static_cast<std::size_t>(out - start);
}

std::size_t utf16_to_utf8(const wide_char* text, std::uint32_t length, char* out) {
  const wide_char* in = text;
  const wide_char* const end = in + length;
  const char* const start = out;
  while (convert_ascii(in, end, out), in < end) put_code_point(take_code_point(in, end), out);
  return static_cast<std::size_t>(out - start);
}

}  // namespace platform
