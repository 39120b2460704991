// Compares the names of members.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "json/node.h"

// Two words that overlap: calling memcmp would take longer than the comparison itself.
template <class Word>
bool same_ends(const char* a, const char* b, std::size_t size) {
  Word differences[4];
  std::memcpy(&differences[0], a, sizeof(Word));
  std::memcpy(&differences[1], b, sizeof(Word));
  std::memcpy(&differences[2], a + size - sizeof(Word), sizeof(Word));
  std::memcpy(&differences[3], b + size - sizeof(Word), sizeof(Word));
  return differences[0] == differences[1] && differences[2] == differences[3];
}

inline bool same_bytes(const char* a, const char* b, std::size_t size) {
  if (size > 16) return std::memcmp(a, b, size) == 0;
  if (size >= 8) return same_ends<std::uint64_t>(a, b, size);
  if (size >= 4) return same_ends<std::uint32_t>(a, b, size);
  return size >= 2 ? same_ends<std::uint16_t>(a, b, size) : *a == *b;
}

// Whether the member has this name, a literal of the program. The value of a string member lies
// after its name, so the bytes between the two may be compared at once.
inline bool is_named(const json_node& member, std::string_view name) {
  if (member.name == nullptr || member.name[0] != name[0]) return false;
  if (member.kind != kind_string) return member.name == name;
  const std::size_t size = name.size() + 1;
  return member.value.string - member.name >= static_cast<std::ptrdiff_t>(size) &&
         same_bytes(member.name, name.data(), size);
}
