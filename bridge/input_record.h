// One form input on its way between JSON and a property bag, in either direction.
#pragma once

#include "bridge/field_order.h"
#include "json/writer.h"
#include "messages/property_bag.h"

// The texts lie in the memory of the bag that the record is written to or read from.
struct input_record {
  wide_view name;
  wide_view value;
  wide_view type;
  wide_view id;
  wide_view readonly;
  wide_view context;
  wide_view form_context;
  wide_view dbSchema;
  wide_view dbvalue;
};

// Where a field of the record stands in JSON and in a bag. The two sets of keys are independent.
struct input_field {
  wide_view input_record::*member;
  json_name json_key;
  wide_view bag_key;
};

// In the order of the record, which is the order of the JSON that is written.
inline constexpr input_field input_fields[] = {
    {&input_record::name, "name", u"name"},
    {&input_record::value, "value", u"value"},
    {&input_record::type, "type", u"type"},
    {&input_record::id, "id", u"id"},
    {&input_record::readonly, "readonly", u"readonly"},
    {&input_record::context, "context", u"context"},
    {&input_record::form_context, "form_context", u"form-context"},
    {&input_record::dbSchema, "dbSchema", u"cf-schema"},
    {&input_record::dbvalue, "dbvalue", u"cf-value"},
};

inline constexpr auto input_fields_by_bag_key =
    order_by_bag_key<std::size(input_fields)>(input_fields);

// Writes all nine fields, empty ones too.
void store_input_record(const input_record& record, text_map::filler& bag);

// The record of a bag; a field that the bag lacks is empty.
input_record load_input_record(const propsW_t& bag);
