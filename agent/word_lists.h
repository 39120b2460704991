// The words that words.h knows, by what they mean.
#pragma once

#include <span>

#include "agent/words.h"

// Words are separated by blanks, and stand without accents, blanks and signs of their own, as texts
// are compared: "e-mail" and "E Mail" are "email". A '_' demands that the text's word begins or
// ends there, which short words need.
struct word_list {
  meaning means;
  wide_view words;
};

std::span<const word_list> word_lists();
