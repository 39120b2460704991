// The order in which a record's fields are written to a bag and read from it.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

// The positions of the `Keyed` fields that have a key in the bag, ordered by that key, so that a
// bag is filled and read without a search. Fails to compile if there aren't `Keyed` of them, or if
// two have the same key.
template <std::size_t Keyed, class Field, std::size_t Count>
consteval std::array<std::size_t, Keyed> order_by_bag_key(const Field (&fields)[Count]) {
  std::array<std::size_t, Keyed> order{};
  std::size_t found = 0;
  for (std::size_t i = 0; i < Count; ++i) {
    if (!fields[i].bag_key.empty()) order.at(found++) = i;
  }
  const auto below = [&fields](std::size_t a, std::size_t b) {
    return fields[a].bag_key < fields[b].bag_key;
  };
  std::sort(order.begin(), order.end(), below);
  for (std::size_t i = 1; i < found; ++i) {
    if (!below(order[i - 1], order[i])) found = 0;
  }
  return found == Keyed ? order : throw "fields and keys don't match";
}
