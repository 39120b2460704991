#include "bridge/input_record.h"

void store_input_record(const input_record& record, propsW_t& bag) {
  for (const std::size_t index : input_fields_by_bag_key) {
    const input_field& field = input_fields[index];
    bag.put(field.bag_key, record.*field.member);
  }
}

input_record load_input_record(const propsW_t& bag) {
  input_record record;
  for (const input_field& field : input_fields) {
    record.*field.member = bag.get(field.bag_key.data(), u"");
  }
  return record;
}
