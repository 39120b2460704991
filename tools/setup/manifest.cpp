#include "tools/setup/manifest.h"

#include <algorithm>

#include "json/parser.h"
#include "json/writer.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/strict_json.h"
#include "transport/text.h"

namespace {

const char* list_name(id_form form) {
  return form == id_form::chromium ? "allowed_origins" : "allowed_extensions";
}

std::string where(const std::string& text, std::size_t offset) {
  const auto line =
      1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n');
  return "line " + std::to_string(line) + ", byte " + std::to_string(offset);
}

std::vector<std::string> strings_of(const json_node& list) {
  std::vector<std::string> strings;
  for (const json_node* child = list.first_child; child != nullptr; child = child->next_sibling) {
    if (child->kind == kind_string) strings.emplace_back(child->value.string);
  }
  return strings;
}

void take_member(const json_node& member, id_form form, manifest& found) {
  const std::string_view name = member.name;
  if (member.kind == kind_string) {
    if (name == "name") found.name = member.value.string;
    if (name == "type") found.type = member.value.string;
    if (name == "path") found.path = member.value.string;
  } else if (member.kind == kind_array && name == list_name(form)) {
    found.allowed = strings_of(member);
  }
}

}  // namespace

std::optional<manifest> parse_manifest(std::string text, id_form form, std::string& error) {
  if (const auto fault = find_json_fault(text)) {
    error = where(text, *fault);
    return std::nullopt;
  }
  // The parser wants the root at the start.
  text.erase(0, text.find_first_not_of(" \t\r\n"));
  scoped_node_arena nodes;
  const char* position = nullptr;
  const char* description = nullptr;
  const json_node* const root = json_parse(text.data(), position, description, nodes);
  if (root == nullptr || root->kind != kind_object) {
    error = "not an object";
    return std::nullopt;
  }
  manifest found;
  for (const json_node* member = root->first_child; member != nullptr;
       member = member->next_sibling) {
    if (member->name != nullptr) take_member(*member, form, found);
  }
  return found;
}

bool is_utf8(const std::string& text) {
  // Only malformed text comes back as another.
  wide_string wide;
  std::string again;
  return utf8_to_wide(wide, text.data(), static_cast<std::uint32_t>(text.size())) &&
         wide_to_utf8(again, wide) && again == text;
}

std::string manifest_text(const std::string& path, id_form form,
                          const std::vector<std::string>& ids) {
  pair_stream allowed;
  for (const std::string& id : ids) allowed << json_quote(origin_of(id, form)) << ',';
  pair_stream members;
  json_put_string(members, "name", host_name);
  json_put_string(members, "description", "Native-messaging host of the coffer password manager");
  json_put_string(members, "path", path);
  json_put_string(members, "type", "stdio");
  json_put_array(members, list_name(form), allowed);
  return json_close_object(members) + '\n';
}
