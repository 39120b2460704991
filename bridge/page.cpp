#include "bridge/page.h"

#include <cstring>

#include "bridge/input_record.h"
#include "transport/text.h"

namespace {

struct page_string {
  wide_string page_record::*member;
  const char* json_key;
  wide_view bag_key;
};

constexpr page_string page_strings[] = {
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

struct page_flag {
  std::int32_t page_record::*member;
  const char* json_key;
  const wide_char* bag_key;
};

constexpr page_flag page_flags[] = {
    {&page_record::fHasMultipleForms, "fHasMultipleForms", u"has-multiple-forms"},
    {&page_record::fIsPartiallyFilled, "fIsPartiallyFilled", u"partially-filled"},
};

bool is_named(const json_node& member, const char* key) {
  // Most names differ in their first letter, and need no call to tell.
  return member.name[0] == key[0] && std::strcmp(member.name, key) == 0;
}

// False, with `target` untouched, for a text that can't be converted.
bool to_wide(wide_string& target, const char* text) {
  return utf8_to_wide(target, text, static_cast<std::uint32_t>(std::strlen(text)));
}

// `record` is scratch: its strings keep their room from one input to the next.
propsW_t input_bag(const json_node& input, input_record& record) {
  for (const input_field& field : input_fields) (record.*field.member).clear();
  for (const json_node* member = input.first_child; member != nullptr;
       member = member->next_sibling) {
    if (member->name == nullptr) continue;
    for (const input_field& field : input_fields) {
      if (take_string_member(*member, field.json_key, record.*field.member)) break;
    }
  }
  propsW_t bag;
  store_input_record(record, bag);
  return bag;
}

void take_inputs(const json_node& member, CfMsgWebsite& message) {
  if (member.kind != kind_array) return;
  input_record record;
  for (const json_node* element = member.first_child; element != nullptr;
       element = element->next_sibling) {
    if (message.inputs.size() == max_listed_bags) return;
    if (element->kind == kind_object) message.inputs.push_back(input_bag(*element, record));
  }
}

void take_navigate_login(const json_node& member, CfMsgWebsite& message) {
  wide_string text;
  if (member.kind == kind_string && to_wide(text, member.value.string)) {
    message.props.set(u"navigate-login", text.c_str(), true);
  }
}

bool take_page_string(const json_node& member, page_record& record) {
  for (const page_string& entry : page_strings) {
    if (take_string_member(member, entry.json_key, record.*entry.member)) return true;
  }
  return false;
}

bool take_page_flag(const json_node& member, page_record& record) {
  for (const page_flag& entry : page_flags) {
    if (!is_named(member, entry.json_key)) continue;
    if (member.kind == kind_int) record.*entry.member = member.value.integer;
    return true;
  }
  return false;
}

void take_page_member(const json_node& member, page_record& record, CfMsgWebsite& message) {
  if (take_string_member(member, "sender", message.sender)) return;
  if (take_page_string(member, record) || take_page_flag(member, record)) return;
  if (is_named(member, "inputs")) take_inputs(member, message);
  if (is_named(member, "navigate_login")) take_navigate_login(member, message);
}

}  // namespace

bool page_json_to_website(const json_node* node, CfMsgWebsite* message) {
  if (node == nullptr || node->name == nullptr || node->first_child == nullptr) return false;
  page_record record;
  for (const json_node* member = node->first_child; member != nullptr;
       member = member->next_sibling) {
    if (member->name != nullptr) take_page_member(*member, record, *message);
  }
  store_page_record(record, message->props);
  return true;
}

bool take_string_member(const json_node& member, const char* key, wide_string& target) {
  if (!is_named(member, key)) return false;
  if (member.kind == kind_string) to_wide(target, member.value.string);
  if (member.kind == kind_null) target.clear();
  return true;
}

void store_page_record(const page_record& record, propsW_t& bag) {
  for (const page_string& entry : page_strings) {
    bag.put(entry.bag_key, record.*entry.member);
  }
  for (const page_flag& entry : page_flags) {
    if (record.*entry.member != 0) {
      bag.set(entry.bag_key, u"1", true);
    } else {
      bag.erase(entry.bag_key);
    }
  }
}
