#include "tools/setup/manifest.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "json/parser.h"
#include "json/writer.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/lenient_json.h"
#include "transport/codecs/text.h"

namespace {

const char* list_name(id_form form) {
  return form == id_form::chromium ? "allowed_origins" : "allowed_extensions";
}

std::string where(const std::string& text, std::size_t offset) {
  const auto line =
      1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n');
  return "line " + std::to_string(line) + ", byte " + std::to_string(offset);
}

std::optional<std::string> string_of(const json_node& member) {
  if (member.kind != kind_string) return std::nullopt;
  return member.value.string;
}

std::optional<std::vector<std::string>> strings_of(const json_node& list) {
  if (list.kind != kind_array) return std::nullopt;
  std::vector<std::string> strings;
  for (const json_node* child = list.first_child; child != nullptr; child = child->next_sibling) {
    if (child->kind != kind_string) return std::nullopt;
    strings.emplace_back(child->value.string);
  }
  return strings;
}

void take_member(const json_node& member, id_form form, manifest& found) {
  const std::string_view name = member.name;
  const std::pair<std::string_view, std::optional<std::string>*> strings[] = {
      {"name", &found.name},
      {"description", &found.description},
      {"type", &found.type},
      {"path", &found.path}};
  for (const auto& [known, value] : strings) {
    if (name == known) {
      *value = string_of(member);
      return;
    }
  }
  if (name == list_name(form)) {
    found.allowed = strings_of(member);
  } else if (form == id_form::firefox) {
    found.unknown = name;
  }
}

std::string quoted(const std::optional<std::string>& text) {
  return text.has_value() ? '"' + *text + '"' : "no text";
}

void look_at_list(const manifest& judged, id_form form, std::vector<manifest_fault>& faults) {
  const std::string list = list_name(form);
  if (!judged.allowed.has_value()) {
    faults.push_back({"origin-absent", "has no list \"" + list + "\" of nothing but texts"});
    return;
  }
  const std::size_t faults_before = faults.size();
  for (const std::string& origin : *judged.allowed) {
    if (is_origin(origin, form)) continue;
    faults.push_back({"origin-malformed", "lists \"" + origin +
                                              "\", which no extension has and for which the "
                                              "browser refuses the whole file"});
  }
  if (faults.size() == faults_before && allowed_ids(judged, form).empty()) {
    faults.push_back({"origin-absent", "lets no extension start the host"});
  }
}

}  // namespace

std::optional<manifest> parse_manifest(const std::string& text, id_form form, std::string& error) {
  if (!is_utf8(text)) {
    error = "it isn't UTF-8";
    return std::nullopt;
  }
  strict_json strict =
      to_strict_json(text, form == id_form::chromium ? chromium_manifest : firefox_json);
  if (strict.fault.has_value()) {
    error = where(text, *strict.fault);
    return std::nullopt;
  }
  scoped_node_arena nodes;
  const char* position = nullptr;
  const char* description = nullptr;
  const json_node* const root = json_parse(strict.text.data(), position, description, nodes);
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

std::vector<std::string> allowed_ids(const manifest& of, id_form form) {
  std::vector<std::string> ids;
  for (const std::string& origin : of.allowed.value_or(std::vector<std::string>())) {
    std::string id = id_of_origin(origin, form);
    if (!id.empty()) ids.push_back(std::move(id));
  }
  return ids;
}

std::vector<manifest_fault> faults_of(const manifest& judged, id_form form) {
  std::vector<manifest_fault> faults;
  if (judged.name != host_name) {
    faults.push_back({"name-wrong", "is for " + quoted(judged.name) +
                                        ", but the extension asks for " + host_name});
  }
  const bool may_be_empty = form == id_form::firefox;
  if (!judged.description.has_value() || (judged.description->empty() && !may_be_empty)) {
    faults.push_back({"description-missing", "has no description, and the browser wants one"});
  }
  if (judged.type != "stdio") {
    faults.push_back(
        {"type-wrong", "has the type " + quoted(judged.type) + "; only \"stdio\" is known"});
  }
  if (!judged.unknown.empty()) {
    faults.push_back({"member-unknown", "has a member \"" + judged.unknown +
                                            "\", for which Firefox refuses the whole file"});
  }
  look_at_list(judged, form, faults);
  return faults;
}

bool is_utf8(const std::string& text) {
  // Only malformed text changes when it is converted there and back.
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
