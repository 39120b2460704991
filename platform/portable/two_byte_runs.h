// Text of ASCII and of letters that take two bytes, as most languages of Latin, Greek and Cyrillic
// script mix them, converted eight elements at a time where the processor can.
//
// Both functions convert from the start of the input, as far as it is of that kind and whole steps
// fit, and move both positions on. They may write behind what they report, but not beyond one unit
// for each byte of the input, or three bytes for each unit.
#pragma once

#include "platform/wide.h"

namespace two_byte_runs {

// `in` is the first byte of a character.
void widen(const unsigned char*& in, const unsigned char* end, wide_char*& out);

void narrow(const wide_char*& in, const wide_char* end, char*& out);

}  // namespace two_byte_runs
