#include "bridge/page.h"

#include "bridge/input_record.h"
#include "json/member_name.h"
#include "platform/platform.h"

namespace {

// A string of the page: its field, its JSON key, and its key in the bag, which is empty if it goes
// elsewhere.
struct page_field {
  wide_view page_record::*member;
  json_name json_key;
  wide_view bag_key;
};

constexpr page_field page_fields[] = {
    {&page_record::sender, "sender", u""},
    {&page_record::source, "source", u"source"},
    {&page_record::title, "title", u"title"},
    {&page_record::user_state, "user_state", u"user-state"},
    {&page_record::document_state, "document_state", u"document-state"},
    {&page_record::context, "context", u"context"},
    {&page_record::before_url, "before_url", u"before-url"},
    {&page_record::after_url, "after_url", u"after-url"},
    {&page_record::source_event, "source_event", u"source-event"},
    {&page_record::source_context, "source_context", u"source-context"},
    {&page_record::click_source, "click_source", u"click-source"},
    {&page_record::submit_source, "submit_source", u"submit-source"},
};

constexpr auto page_fields_by_bag_key = order_by_bag_key<std::size(page_fields) - 1>(page_fields);

struct page_flag {
  std::int32_t page_record::*member;
  const char* json_key;
  wide_view bag_key;
};

constexpr page_flag page_flags[] = {
    {&page_record::fHasMultipleForms, "fHasMultipleForms", u"has-multiple-forms"},
    {&page_record::fIsPartiallyFilled, "fIsPartiallyFilled", u"partially-filled"},
};

constexpr wide_view navigate_login_key = u"navigate-login";

constexpr std::size_t most_page_properties =
    page_fields_by_bag_key.size() + std::size(page_flags) + 1;

// Room for the properties that pages rarely have, keys included.
constexpr std::size_t rare_property_units = 64;

// Converts the text right where it will stay. False, with `target` untouched, if the text can't be
// converted.
bool to_wide(wide_view& target, const json_node& text, text_map::filler& bag) {
  std::size_t made = 0;
  if (text.text_length > 0) {
    made = platform::utf8_to_utf16(text.value.string, text.text_length, bag.room());
    if (made == 0) return false;
  }
  target = bag.keep(made);
  return true;
}

// The most that the values of an object's strings can take in a bag, in units.
std::size_t units_of_strings(const json_node& object) {
  std::size_t units = 0;
  for (const json_node& member : children_of(object)) {
    if (member.kind == kind_string) units += std::size_t{member.text_length} + 1;
  }
  return units;
}

// Members usually come in the order of the fields, so each search starts at `next`, after the field
// that the search before it found, and wraps around.
template <class Field, std::size_t Count, class Record>
bool take_field(const json_node& member, const Field (&fields)[Count], std::size_t& next,
                Record& record, text_map::filler& bag) {
  for (std::size_t tried = 0; tried < Count; ++tried) {
    const Field& field = fields[next];
    next = next + 1 < Count ? next + 1 : 0;
    const std::string_view name = field.json_key.text();
    if (take_string_member(member, name, record.*field.member, bag)) return true;
  }
  return false;
}

void fill_input(const json_node& input, propsW_t& props) {
  text_map::filler bag = props.fill(std::size(input_fields), units_of_strings(input));
  input_record record;
  std::size_t next = 0;
  for (const json_node& member : children_of(input)) {
    if (member.name != nullptr) take_field(member, input_fields, next, record, bag);
  }
  store_input_record(record, bag);
}

void take_inputs(const json_node& member, CfMsgWebsite& message) {
  if (member.kind != kind_array) return;
  for (const json_node& element : children_of(member)) {
    if (message.inputs.size() == max_listed_bags) return;
    if (element.kind == kind_object) fill_input(element, message.inputs.emplace_back());
  }
}

bool take_page_flag(const json_node& member, page_record& record) {
  for (const page_flag& entry : page_flags) {
    if (!is_named(member, entry.json_key)) continue;
    if (member.kind == kind_int) record.*entry.member = member.value.integer;
    return true;
  }
  return false;
}

void take_rare_member(const json_node& member, page_record& record, text_map::filler& bag,
                      CfMsgWebsite& message) {
  if (take_page_flag(member, record)) return;
  if (is_named(member, "inputs")) take_inputs(member, message);
  if (is_named(member, "navigate_login") && member.kind == kind_string) {
    to_wide(record.navigate_login, member, bag);
  }
}

// Stores "1" for each flag that isn't zero.
void store_rare_properties(const page_record& record, propsW_t& bag) {
  for (const page_flag& entry : page_flags) {
    if (record.*entry.member != 0) bag.put(entry.bag_key, u"1");
  }
  if (record.navigate_login.data() != nullptr) bag.put(navigate_login_key, record.navigate_login);
}

}  // namespace

bool page_json_to_website(const json_node* node, CfMsgWebsite* message) {
  if (node == nullptr || node->name == nullptr || node->first_child == nullptr) return false;
  text_map::filler bag =
      message->props.fill(most_page_properties, units_of_strings(*node) + rare_property_units);
  page_record record;
  std::size_t next = 0;
  for (const json_node& member : children_of(*node)) {
    if (member.name == nullptr) continue;
    if (take_field(member, page_fields, next, record, bag)) continue;
    take_rare_member(member, record, bag, *message);
  }
  store_page_record(record, bag);
  store_rare_properties(record, message->props);
  message->sender = record.sender;
  return true;
}

bool take_string_member(const json_node& member, std::string_view key, wide_view& target,
                        text_map::filler& bag) {
  if (!is_named(member, key)) return false;
  if (member.kind == kind_string) to_wide(target, member, bag);
  if (member.kind == kind_null) target = {};
  return true;
}

void store_page_record(const page_record& record, text_map::filler& bag) {
  for (const std::size_t index : page_fields_by_bag_key) {
    bag.add(page_fields[index].bag_key, record.*page_fields[index].member);
  }
}
