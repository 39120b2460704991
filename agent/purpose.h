// What a page says outright that an input is for: its "autocomplete" attribute, which the extension
// puts behind the label, as in "Your name [username]".
#pragma once

#include "agent/words.h"

struct input_context {
  wide_view label;
  meanings purpose;  // 0 where the page names none that is known
};

input_context split_context(wide_view context);
