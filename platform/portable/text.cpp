#include "platform/platform.h"
#include "platform/portable/ascii_runs.h"
#include "platform/portable/two_byte_runs.h"

namespace platform {
namespace {

using byte = unsigned char;

constexpr wide_char replacement = 0xFFFD;

// Shorter runs are faster one by one.
constexpr std::ptrdiff_t shortest_run = 8;

bool is_continuation(byte b) { return (b & 0xC0) == 0x80; }
bool is_high_surrogate(wide_char u) { return (u & 0xFC00) == 0xD800; }
bool is_low_surrogate(wide_char u) { return (u & 0xFC00) == 0xDC00; }
bool takes_three_bytes(wide_char u) { return u >= 0x800 && (u & 0xF800) != 0xD800; }

// Whether a lead byte may be followed by this one (Unicode table 3-7). The ranges exclude overlong
// forms, values above U+10FFFF, and surrogates, which is_three_bytes lets in if they are whole.
bool may_follow(byte lead, byte second) {
  if (!is_continuation(second)) return false;
  switch (lead) {
    case 0xE0:
      return second >= 0xA0;
    case 0xED:
      return second <= 0x9F;
    case 0xF0:
      return second >= 0x90;
    case 0xF4:
      return second <= 0x8F;
    default:
      return lead >= 0xC2 && lead <= 0xF4;
  }
}

// Length of the maximal subpart at `in`, where there is no whole sequence: the lead byte and those
// of the following bytes that could have continued it.
int ill_formed_length(const byte* in, const byte* end) {
  if (end - in < 2 || !may_follow(in[0], in[1])) return 1;
  return in[0] >= 0xF0 && end - in >= 3 && is_continuation(in[2]) ? 3 : 2;
}

bool is_two_bytes(const byte* in, const byte* end) {
  return in[0] >= 0xC2 && in[0] <= 0xDF && end - in >= 2 && is_continuation(in[1]);
}

// Lets whole surrogates in.
bool is_three_bytes(const byte* in, const byte* end) {
  return (in[0] & 0xF0) == 0xE0 && end - in >= 3 && is_continuation(in[1]) &&
         is_continuation(in[2]) && (in[0] != 0xE0 || in[1] >= 0xA0);
}

bool is_four_bytes(const byte* in, const byte* end) {
  return in[0] >= 0xF0 && end - in >= 4 && may_follow(in[0], in[1]) && is_continuation(in[2]) &&
         is_continuation(in[3]);
}

void put_three_bytes(const byte*& in, wide_char*& out) {
  *out++ = static_cast<wide_char>((in[0] & 0x0F) << 12 | (in[1] & 0x3F) << 6 | (in[2] & 0x3F));
  in += 3;
}

// Converts the sequence at `in`, which may be one ASCII byte, or replaces its maximal subpart.
// Advances both positions.
void convert_sequence(const byte*& in, const byte* end, wide_char*& out) {
  if (in[0] < 0x80) {
    *out++ = *in++;
  } else if (is_two_bytes(in, end)) {
    *out++ = static_cast<wide_char>((in[0] & 0x1F) << 6 | (in[1] & 0x3F));
    in += 2;
  } else if (is_three_bytes(in, end)) {
    put_three_bytes(in, out);
  } else if (is_four_bytes(in, end)) {
    const int code_point =
        (in[0] & 0x07) << 18 | (in[1] & 0x3F) << 12 | (in[2] & 0x3F) << 6 | (in[3] & 0x3F);
    *out++ = static_cast<wide_char>(0xD800 + ((code_point - 0x10000) >> 10));
    *out++ = static_cast<wide_char>(0xDC00 + (code_point & 0x3FF));
    in += 4;
  } else {
    *out++ = replacement;
    in += ill_formed_length(in, end);
  }
}

void put(char*& out, char32_t b) { *out++ = static_cast<char>(b); }

void put_three(char32_t c, char*& out) {
  put(out, 0xE0 | c >> 12);
  put(out, 0x80 | (c >> 6 & 0x3F));
  put(out, 0x80 | (c & 0x3F));
}

void put_code_point(char32_t c, char*& out) {
  if (c < 0x80) {
    put(out, c);
  } else if (c < 0x800) {
    put(out, 0xC0 | c >> 6);
    put(out, 0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put_three(c, out);
  } else {
    put(out, 0xF0 | c >> 18);
    put(out, 0x80 | (c >> 12 & 0x3F));
    put(out, 0x80 | (c >> 6 & 0x3F));
    put(out, 0x80 | (c & 0x3F));
  }
}

char32_t take_code_point(const wide_char*& in, const wide_char* end) {
  const wide_char unit = *in++;
  if (unit < 0xD800 || unit > 0xDFFF) return unit;
  if (is_high_surrogate(unit) && in < end && is_low_surrogate(*in)) {
    return 0x10000 + (static_cast<char32_t>(unit & 0x3FF) << 10) + (*in++ & 0x3FFu);
  }
  return replacement;
}

}  // namespace

std::size_t utf8_to_utf16(const char* text, std::uint32_t length, wide_char* out) {
  const auto* in = reinterpret_cast<const byte*>(text);
  const byte* const end = in + length;
  // A text that begins otherwise is of another script.
  if (in < end && *in < 0x80 && ascii_runs::widen_short(in, length, out)) return length;
  const wide_char* const start = out;
  while (in < end) {
    if (*in < 0x80) {
      if (end - in >= shortest_run) ascii_runs::widen(in, end, out);
      while (in < end && *in < 0x80) *out++ = *in++;
    } else if (is_three_bytes(in, end)) {
      // Scripts whose characters take three bytes come in runs too.
      do {
        put_three_bytes(in, out);
      } while (in < end && is_three_bytes(in, end));
    } else {
      convert_sequence(in, end, out);
      // Where one is that takes two bytes there are more, with ASCII in between.
      if (end - in <= shortest_run) continue;
      const two_byte_runs::widened done = two_byte_runs::widen(in, end, out);
      in = done.in;
      out = done.out;
    }
  }
  return static_cast<std::size_t>(out - start);
}

std::size_t utf16_to_utf8(const wide_char* text, std::uint32_t length, char* out) {
  const wide_char* in = text;
  const wide_char* const end = in + length;
  if (in < end && *in < 0x80 && ascii_runs::narrow_short(text, length, out)) return length;
  const char* const start = out;
  while (in < end) {
    if (*in < 0x80) {
      if (end - in >= shortest_run) ascii_runs::narrow(in, end, out);
      while (in < end && *in < 0x80) put(out, *in++);
    } else if (takes_three_bytes(*in)) {
      do {
        put_three(*in++, out);
      } while (in < end && takes_three_bytes(*in));
    } else {
      put_code_point(take_code_point(in, end), out);
      if (end - in < shortest_run) continue;
      const two_byte_runs::narrowed done = two_byte_runs::narrow(in, end, out);
      in = done.in;
      out = done.out;
    }
  }
  return static_cast<std::size_t>(out - start);
}

}  // namespace platform
