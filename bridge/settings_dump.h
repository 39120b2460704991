// Shows settings in the diagnostics.
#pragma once

#include "messages/text_map.h"

// Writes a line for each pair, or one that says that there are none, each with `prefix` in front.
// Does nothing while diagnostics are off.
void dump_settings(const text_map& pairs, const wide_char* prefix);
