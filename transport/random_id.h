#pragma once

#include <cstddef>

constexpr std::size_t random_id_length = 32;

// Fills `out` with random_id_length letters and digits that tell the frames of one reply from those
// of another. They are tags and nothing more: the generator isn't seeded, so they can be predicted
// and repeat from run to run. Any thread may call this.
void random_id(char* out);
