#include "json/number_tokens.h"

#include <cmath>

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool take_minus(const char*& at, const char* end) {
  const bool minus = at != end && *at == '-';
  if (minus) ++at;
  return minus;
}

// Wraps modulo 2^32, like every integer of the dialect.
std::uint32_t take_digits(const char*& at, const char* end) {
  std::uint32_t value = 0;
  for (; at != end && is_digit(*at); ++at)
    value = value * 10 + static_cast<std::uint32_t>(*at - '0');
  return value;
}

float digit_value(char c) { return static_cast<float>(c - '0'); }

// 10 to the power of `exponent`; also 10 for an exponent below 1. Stops at infinity, which further
// multiplication doesn't change.
float power_of_ten(std::int32_t exponent) {
  float power = 10.0F;
  for (std::int32_t i = 1; i < exponent && !std::isinf(power); ++i) power *= 10.0F;
  return power;
}

}  // namespace

const char* parse_int_token(const char* first, const char* end, std::int32_t& out) {
  const bool negative = take_minus(first, end);
  const std::uint32_t value = take_digits(first, end);
  out = static_cast<std::int32_t>(negative ? 0 - value : value);
  return first;
}

const char* parse_float_token(const char* first, const char* end, float& out) {
  const float sign = take_minus(first, end) ? -1.0F : 1.0F;
  float value = 0.0F;
  for (; first != end && is_digit(*first); ++first) value = digit_value(*first) + value * 10.0F;
  if (first != end && *first == '.') {
    float factor = 0.1F;
    for (++first; first != end && is_digit(*first); ++first) {
      value = value + digit_value(*first) * factor;
      factor = factor * 0.1F;
    }
  }
  out = value * sign;
  if (first == end || (*first != 'e' && *first != 'E')) return first;

  ++first;
  const bool divide = take_minus(first, end);
  if (!divide && first != end && *first == '+') ++first;
  const auto exponent = static_cast<std::int32_t>(take_digits(first, end));
  if (exponent == 0) return first;
  out = divide ? out / power_of_ten(exponent) : out * power_of_ten(exponent);
  return first;
}
