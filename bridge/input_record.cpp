#include "bridge/input_record.h"

void store_input_record(const input_record& record, propsW_t& bag) {
  for (const input_field& field : input_fields) {
    bag.set(field.bag_key, (record.*field.member).c_str(), true);
  }
}

input_record load_input_record(const propsW_t& bag) {
  input_record record;
  for (const input_field& field : input_fields) {
    record.*field.member = bag.get(field.bag_key, u"");
  }
  return record;
}
