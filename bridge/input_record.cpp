#include "bridge/input_record.h"

void store_input_record(const input_record& record, text_map::filler& bag) {
  for (const std::size_t index : input_fields_by_bag_key) {
    const input_field& field = input_fields[index];
    bag.add(field.bag_key, record.*field.member);
  }
}

// Fields and pairs have one order, so that both are walked once.
input_record load_input_record(const propsW_t& bag) {
  input_record record;
  const text_map& map = bag.map();
  const text_map::pair* pair = map.begin();
  for (const std::size_t index : input_fields_by_bag_key) {
    const input_field& field = input_fields[index];
    while (pair != map.end() && pair->key_text() < field.bag_key) ++pair;
    if (pair == map.end()) break;
    if (pair->key_text() == field.bag_key) record.*field.member = (pair++)->value_text();
  }
  return record;
}
