// The order in which a bag takes and gives the fields of a record.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

// The positions in `fields` of those with a key in the bag, which are `Keyed`, in the order of
// these keys: a bag is filled and read without a search. Fails to compile if their number differs
// or two have one key.
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
