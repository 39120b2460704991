// Texts and numbers in JSON as browsers read it.
#pragma once

#include "tools/setup/json_taker.h"
#include "tools/setup/lenient_json.h"

// Each takes what stands at the start of the rest; false if it doesn't fit.
bool take_string(json_taker& from, const json_leniency& leniency);
bool take_number(json_taker& from);  // that a double holds
