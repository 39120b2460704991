// Shows settings in the diagnostics.
#pragma once

#include "messages/text_map.h"

// A line for each pair, or one that says that there is none, each behind `prefix`. Nothing while
// diagnostics are off.
void dump_settings(const text_map& pairs, const wide_char* prefix);
