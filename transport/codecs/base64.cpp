#include "transport/codecs/base64.h"

#include <array>
#include <cstddef>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t foreign = 0xFF;

// The value of each character of the alphabet; `foreign` for all other bytes.
consteval std::array<std::uint8_t, 256> make_values() {
  std::array<std::uint8_t, 256> values{};
  for (auto& value : values) value = foreign;
  for (std::uint8_t i = 0; i < 64; ++i) values[static_cast<unsigned char>(alphabet[i])] = i;
  return values;
}
constexpr std::array<std::uint8_t, 256> values = make_values();

std::uint8_t value_of(char c) { return values[static_cast<unsigned char>(c)]; }

// The bits of up to four characters, the first one highest.
struct group {
  std::uint32_t bits = 0;
  int characters = 0;

  int bytes() const { return characters * 6 / 8; }
};

// Takes the next group and skips foreign bytes.
group take_group(const char*& at, const char* end) {
  group g;
  // Usually four characters stand in a row; `foreign` shows in the top bits of the union.
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

// Decodes into a destination of limited room. What doesn't fit is counted but not written.
class decoder {
 public:
  decoder(const char* source, const char* end, char* destination, std::int32_t capacity, int width)
      : at_(source),
        end_(end),
        width_(width),
        destination_(destination),
        capacity_(capacity),
        overflow_(destination == nullptr) {}

  // A NUL where a group would begin ends the text.
  void run() {
    while (at_ != end_ && *at_ != '\0') {
      take_run();
      if (at_ != end_ && *at_ != '\0') put(take_group(at_, end_));
    }
  }

  std::int32_t written() const { return static_cast<std::int32_t>(written_); }
  bool overflow() const { return overflow_; }

 private:
  // Decodes by vector code up to a foreign byte. The plain code takes the group with that byte, and
  // the vector code continues after it. Only line breaks make that happen often.
  void take_run() {
    if (overflow_ || capacity_ < written_) return;
    const base64_progress done =
        base64_decode_vector(at_, static_cast<std::size_t>(end_ - at_), destination_ + written_,
                             static_cast<std::size_t>(capacity_ - written_), width_);
    at_ += done.read;
    written_ += static_cast<std::int64_t>(done.written);
  }

  void put(const group& g) {
    const int bytes = g.bytes();
    overflow_ = overflow_ || written_ + bytes > capacity_;
    if (!overflow_) {
      for (int i = 0; i < bytes; ++i) {
        destination_[written_ + i] = static_cast<char>(g.bits >> (16 - 8 * i));
      }
    }
    written_ += bytes;
  }

  const char* at_;
  const char* const end_;
  const int width_;
  char* const destination_;
  const std::int64_t capacity_;
  std::int64_t written_ = 0;
  bool overflow_;
};

char* put_character(char* out, std::uint32_t bits) {
  *out = alphabet[bits & 63];
  return out + 1;
}

std::uint32_t byte_at(const char* at) { return static_cast<unsigned char>(*at); }

}  // namespace

std::int32_t base64_encoded_length(std::int32_t n) {
  const auto unpadded = static_cast<std::int32_t>(std::int64_t{n} * 4 / 3);
  return (unpadded + 3) / 4 * 4;
}

int base64_encode(const char* source, std::int32_t n, char* destination, std::int32_t* length,
                  int width) {
  if (destination == nullptr || length == nullptr) return -1;
  if (n < 0 || n > max_base64_input || *length < base64_encoded_length(n)) return -1;

  const base64_progress fast =
      base64_encode_vector(source, static_cast<std::size_t>(n), destination, width);
  char* out = destination + fast.written;
  const char* at = source + fast.read;
  const char* const whole_end = source + n - n % 3;
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
                  const char* source_end, int width) {
  if (length == nullptr) return -1;
  decoder text(source, source_end, destination, *length, width);
  text.run();
  *length = text.written();
  return text.overflow() ? -1 : 0;
}
