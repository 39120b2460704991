// The words that words.h knows, by what they mean.
#pragma once

#include <span>

#include "agent/words.h"

// Words are separated by blanks and written without accents, blanks and punctuation of their own,
// as texts are compared: "e-mail" and "E Mail" are "email". A '_' means that the word must begin or
// end there in the text too, which short words need.
struct word_list {
  meaning means;
  wide_view words;
};

std::span<const word_list> word_lists();
