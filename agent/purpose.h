// What a page says outright that an input is for: its "autocomplete" attribute, which the extension
// appends to the label, as in "Your name [username]".
#pragma once

#include "agent/words.h"

struct input_context {
  wide_view label;
  meanings purpose;  // 0 if the page names no known one
};

input_context split_context(wide_view context);
