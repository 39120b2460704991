// Text of ASCII and of letters that take two bytes, as most languages of Latin, Greek and Cyrillic
// script mix them, converted eight elements at a time where the processor can.
//
// Both functions convert from the start of the input, as far as it is of that kind and whole steps
// fit, and give both positions behind that. They may write behind what they report, but not beyond
// one unit for each byte of the input, or three bytes for each unit.
#pragma once

#include "platform/wide.h"

namespace two_byte_runs {

// By value: a position whose address is known elsewhere is stored again with each byte.
template <class From, class To>
struct positions {
  const From* in;
  To* out;
};
using widened = positions<unsigned char, wide_char>;
using narrowed = positions<wide_char, char>;

// `in` is the first byte of a character.
widened widen(const unsigned char* in, const unsigned char* end, wide_char* out);

narrowed narrow(const wide_char* in, const wide_char* end, char* out);

}  // namespace two_byte_runs
