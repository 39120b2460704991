// Letters, as far as hosts and words need them: Latin with its accents, Greek and Cyrillic.
#pragma once

#include "platform/wide.h"

// The small form of a capital letter; anything else unchanged.
wide_char small_letter(wide_char c);

// The letter as people without accents on their keyboard type it: small, and Latin without marks.
// Full-width forms become their ASCII counterparts.
wide_char plain_letter(wide_char c);
