// Labels of host names in ASCII (RFC 3492).
#pragma once

#include <string>

#include "platform/wide.h"

constexpr std::size_t longest_label = 63;  // bytes in ASCII (RFC 1035)

// Appends the label's ASCII form to `out`: the label itself, or "xn--" and its code. Letters must
// be small already. False, with nothing appended, for a label that is empty or too long, or holds
// half a surrogate pair.
bool append_ascii_label(std::string& out, wide_view label);
