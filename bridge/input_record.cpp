#include "bridge/input_record.h"

#include <cstring>

namespace {

// Faster than the standard library's comparison, which goes unit by unit.
bool is_same(wide_view a, wide_view b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(wide_char)) == 0;
}

}  // namespace

void store_input_record(const input_record& record, text_map::filler& bag) {
  for (const std::size_t index : input_fields_by_bag_key) {
    const input_field& field = input_fields[index];
    bag.add(field.bag_key, record.*field.member);
  }
}

// Fields and pairs are in the same order, so both are walked once.
input_record load_input_record(const propsW_t& bag) {
  input_record record;
  const text_map& map = bag.map();
  const text_map::pair* pair = map.begin();
  for (const std::size_t index : input_fields_by_bag_key) {
    const input_field& field = input_fields[index];
    // Most bags have exactly these keys.
    if (pair != map.end() && !is_same(pair->key_text(), field.bag_key)) {
      while (pair != map.end() && pair->key_text() < field.bag_key) ++pair;
    }
    if (pair == map.end()) break;
    if (is_same(pair->key_text(), field.bag_key)) record.*field.member = (pair++)->value_text();
  }
  return record;
}
