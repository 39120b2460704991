// Which input of a form is for the login's user.
#pragma once

#include <optional>
#include <vector>

#include "agent/field_kind.h"
#include "agent/page_kind.h"

// How well an input fits a login's user: 0 if not at all.
int fitness_for_user(field_kind kind);

// The one ahead of the password that fits best; of several the one next to it. `fitness` gives how
// well the input at a position fits, 0 if not at all.
template <class Fitness>
std::optional<position> best_user(const std::vector<position>& inputs,
                                  std::optional<position> password, Fitness fitness) {
  std::optional<position> best;
  int most = 1;
  for (const position input : inputs) {
    if (password && input > *password) break;
    const int here = fitness(input);
    if (here < most) continue;
    best = input;
    most = here;
  }
  return best;
}
