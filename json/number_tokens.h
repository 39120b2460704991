// Conversion of the dialect's number tokens. Both functions write their result and return the
// position at which they stopped; the token is valid only if that is its end.
#pragma once

#include <cstdint>

// Decimal digits after an optional sign, modulo 2^32. No digits give 0.
const char* parse_int_token(const char* first, const char* end, std::int32_t& out);

// Digits, a fraction and an exponent, each optional, in single precision throughout; the order of
// the operations is part of the dialect, since it fixes the rounding.
const char* parse_float_token(const char* first, const char* end, float& out);
