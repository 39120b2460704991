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
    int order = -1;
    while (pair != map.end() && (order = pair->key_text().compare(field.bag_key)) < 0) ++pair;
    if (order == 0) record.*field.member = (pair++)->value_text();
  }
  return record;
}
