// What the escapes of a JSON string stand for (RFC 8259, section 7), and the byte moves for
// decoding a string in place.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

inline constexpr std::uint8_t no_digit = 0xFF;

// The values of hexadecimal digits; `no_digit` for all other bytes.
consteval std::array<std::uint8_t, 256> make_hex_digits() {
  std::array<std::uint8_t, 256> digits{};
  for (auto& digit : digits) digit = no_digit;
  for (std::uint8_t i = 0; i < 10; ++i) digits[std::size_t{'0'} + i] = i;
  for (std::uint8_t i = 0; i < 6; ++i) {
    digits[std::size_t{'a'} + i] = digits[std::size_t{'A'} + i] = static_cast<std::uint8_t>(10 + i);
  }
  return digits;
}
inline constexpr std::array<std::uint8_t, 256> hex_digits = make_hex_digits();

inline std::uint8_t hex_digit(char c) { return hex_digits[static_cast<unsigned char>(c)]; }

// What the one-letter escapes stand for; NUL for all other bytes.
consteval std::array<char, 256> make_escaped_characters() {
  std::array<char, 256> characters{};
  for (const char same : {'"', '\\', '/'}) characters[static_cast<unsigned char>(same)] = same;
  characters['b'] = '\b';
  characters['f'] = '\f';
  characters['n'] = '\n';
  characters['r'] = '\r';
  characters['t'] = '\t';
  return characters;
}
inline constexpr std::array<char, 256> escaped_characters = make_escaped_characters();

inline char escaped_character(char letter) {
  return escaped_characters[static_cast<unsigned char>(letter)];
}

// Copies two words that overlap, which covers all lengths from one word to two.
template <class Word>
void move_ends(char* out, const char* from, std::size_t length) {
  Word first{}, last{};
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + length - sizeof last, sizeof last);
  std::memcpy(out, &first, sizeof first);
  std::memcpy(out + length - sizeof last, &last, sizeof last);
}

// Moves bytes towards the start of a text. Most runs between two escapes are so short that a call
// would cost more than the move.
inline char* move_back(char* out, const char* from, std::size_t length) {
  if (length >= 16) {
    std::memmove(out, from, length);
  } else if (length >= 8) {
    move_ends<std::uint64_t>(out, from, length);
  } else if (length >= 4) {
    move_ends<std::uint32_t>(out, from, length);
  } else {
    for (std::size_t i = 0; i < length; ++i) out[i] = from[i];
  }
  return out + length;
}

// Writes the UTF-8 form of one UTF-16 code unit. The halves of a surrogate pair stay apart here, as
// three bytes each; the conversion to wide text joins them.
inline char* put_code_unit(char* out, int unit) {
  if (unit < 0x80) {
    *out++ = static_cast<char>(unit);
  } else if (unit < 0x800) {
    *out++ = static_cast<char>(0xC0 | unit >> 6);
    *out++ = static_cast<char>(0x80 | (unit & 0x3F));
  } else {
    *out++ = static_cast<char>(0xE0 | unit >> 12);
    *out++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    *out++ = static_cast<char>(0x80 | (unit & 0x3F));
  }
  return out;
}
